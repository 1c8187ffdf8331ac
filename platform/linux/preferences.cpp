#include "platform/preferences.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "base/unique_fd.h"
#include "platform/files.h"
#include "platform/linux/property_list_file.h"
#include "platform/process_environment.h"

namespace wendle {
static std::string domainPath(const std::string& domain) {
  return standardDirectoryPath(StandardDirectory::userLibrary) + "/Preferences/" + domain + ".plist";
}

// An absent domain is an empty one; none for a file that cannot be read.
static std::optional<PropertyListFile> readDomain(const std::string& path) {
  if (!fileExists(path)) return PropertyListFile{{PropertyListDictionary()}, PropertyListFormat::binary};
  const auto content = readToEnd(UniqueFd(::open(path.c_str(), O_RDONLY | O_CLOEXEC)).get());
  return content ? parsePropertyList(*content) : std::nullopt;
}

// Readers see the old file or the new one, never a part of it.
static bool replaceFile(const std::string& path, const std::string& bytes) {
  std::string temporary = path + ".XXXXXX";
  const UniqueFd file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!file.isOpen()) return false;
  const auto written = ::write(file.get(), bytes.data(), bytes.size());
  const bool isWhole = written >= 0 && static_cast<size_t>(written) == bytes.size();
  if (isWhole && std::rename(temporary.c_str(), path.c_str()) == 0) return true;
  ::unlink(temporary.c_str());
  return false;
}

std::optional<PropertyList> UserDefaults::objectForKey(const std::string& key) const {
  if (const auto found = unwritten_.find(key); found != unwritten_.end()) return found->second;
  const auto file = readDomain(domainPath(domain_));
  const PropertyList* value = file ? file->content.find(key) : nullptr;
  if (value == nullptr) return std::nullopt;
  return *value;
}

bool UserDefaults::synchronize() {
  const std::string path = domainPath(domain_);
  auto file = readDomain(path);
  auto* entries = file ? std::get_if<PropertyListDictionary>(&file->content.value) : nullptr;
  if (entries == nullptr) return false;  // not ours to replace
  for (const auto& [key, value] : unwritten_) entries->insert_or_assign(key, value);
  if (!replaceFile(path, serialized(*file))) return false;
  unwritten_.clear();
  return true;
}
}  // namespace wendle
