// The image's selectors, classes and categories. The structures are those of macOS's runtime (its
// objc-runtime-new.h); what it writes into them is written here: selectors, and where instance variables came
// to lie. Properties and protocols only describe, and GCC's runtime does not ask for them.
#include <objc/runtime.h>

#include <bit>
#include <map>

#include "simulated_mac/macos_program/objective_c.h"

namespace wendle::macho {
namespace {
struct MethodList {
  std::uint32_t elementSize, count;
  struct {
    const char *name, *types;
    IMP implementation;
  } methods[1];
};

struct VariableList {
  std::uint32_t elementSize, count;
  struct {
    std::int32_t* offset;
    const char *name, *types;
    std::uint32_t alignmentShift, size;
  } variables[1];
};

struct ClassDescription {
  std::uint32_t flags, start, size, reserved;
  const void* layout;
  const char* name;
  const MethodList* methods;
  const void* protocols;
  const VariableList* variables;
};

struct ImageClass {
  ImageClass* meta;
  void* superclass;  // one of the image's, or one of the runtime's
  void *cache, *table;
  const ClassDescription* description;
};

struct Category {
  const char* name;
  void* extended;
  const MethodList *methods, *classMethods;
};

constexpr std::uint32_t methodSize = 24, variableSize = 32;

class Registration {
 public:
  explicit Registration(const Image& image) : image_(image) {}

  void run() {
    for (const char*& selector : image_.array<const char*>("__objc_selrefs")) {
      selector = reinterpret_cast<const char*>(sel_registerName(selector));
    }
    const auto classes = image_.array<ImageClass*>("__objc_classlist");
    for (ImageClass* described : classes) made_[described] = nil;
    for (ImageClass* described : classes) (void)findClass(described);
    for (const Category* category : image_.array<Category*>("__objc_catlist")) {
      Class extended = findClass(category->extended);
      addMethods(extended, category->methods);
      addMethods(object_getClass(extended), category->classMethods);
    }
    for (const char* references : {"__objc_classrefs", "__objc_superrefs"}) {
      for (void*& reference : image_.array<void*>(references))
        reference = static_cast<void*>(findClass(reference));
    }
  }

 private:
  // The runtime's class for a pointer of the image to a class, which may be the runtime's already.
  Class findClass(void* pointer) {
    const auto found = made_.find(pointer);
    if (found != made_.end()) {
      return found->second != nil ? found->second : found->second = make(*static_cast<ImageClass*>(pointer));
    }
    for (const auto& [described, type] : made_) {
      if (static_cast<ImageClass*>(described)->meta == pointer) return object_getClass(findClass(described));
    }
    return static_cast<Class>(pointer);
  }

  Class make(const ImageClass& described) {
    const ClassDescription& description = *described.description;
    Class type = objc_allocateClassPair(findClass(described.superclass), description.name, 0);
    if (type == nil) throw Refusal(std::string("there is a class already of the name ") + description.name);
    addVariables(type, description.variables);
    addMethods(type, description.methods);
    addMethods(object_getClass(type), described.meta->description->methods);
    objc_registerClassPair(type);
    setOffsets(type, description.variables);
    return type;
  }

  static void addMethods(Class type, const MethodList* list) {
    if (list == nullptr) return;
    if (list->elementSize != methodSize) throw Refusal("it has a list of methods of an unknown form");
    for (std::uint32_t i = 0; i < list->count; ++i) {
      const auto& method = list->methods[i];
      class_addMethod(type, sel_registerName(method.name), method.implementation, method.types);
    }
  }

  static void addVariables(Class type, const VariableList* list) {
    if (list == nullptr) return;
    if (list->elementSize != variableSize)
      throw Refusal("it has a list of instance variables of an unknown form");
    for (std::uint32_t i = 0; i < list->count; ++i) {
      const auto& variable = list->variables[i];
      class_addIvar(type, variable.name, variable.size, static_cast<unsigned char>(variable.alignmentShift),
                    variable.types);
    }
  }

  static void setOffsets(Class type, const VariableList* list) {
    for (std::uint32_t i = 0; list != nullptr && i < list->count; ++i) {
      const auto& variable = list->variables[i];
      *variable.offset =
          static_cast<std::int32_t>(ivar_getOffset(class_getInstanceVariable(type, variable.name)));
    }
  }

  const Image& image_;
  std::map<void*, Class> made_;  // nil for those that are not made yet
};
}  // namespace

void registerObjectiveC(const Image& image) { Registration(image).run(); }
}  // namespace wendle::macho
