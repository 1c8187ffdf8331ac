#include "platform/macos/foundation_values.h"

#include <limits>
#include <string_view>

namespace wendle {
namespace {
struct MakeObject {
  id operator()(const std::string& text) const { return toNSString(text); }
  id operator()(std::int64_t number) const { return [NSNumber numberWithLongLong:number]; }
  id operator()(std::uint64_t number) const { return [NSNumber numberWithUnsignedLongLong:number]; }
  id operator()(double number) const { return [NSNumber numberWithDouble:number]; }
  id operator()(bool flag) const { return [NSNumber numberWithBool:flag ? YES : NO]; }
  id operator()(PropertyListDate date) const {
    return [NSDate dateWithTimeIntervalSinceReferenceDate:date.seconds];
  }
  id operator()(const PropertyListData& data) const {
    return [NSData dataWithBytes:data.bytes.data() length:data.bytes.size()];
  }
  id operator()(const PropertyListArray& array) const {
    NSMutableArray* objects = [NSMutableArray array];
    for (const PropertyList& element : array) [objects addObject:toFoundation(element)];
    return objects;
  }
  id operator()(const PropertyListDictionary& dictionary) const {
    NSMutableDictionary* objects = [NSMutableDictionary dictionary];
    for (const auto& [key, entry] : dictionary) {
      [objects setObject:toFoundation(entry) forKey:toNSString(key)];
    }
    return objects;
  }
};

// The numbers true and false have a class of their own; their objCType is that of a small integer [D].
bool isBoolean(NSNumber* number) { return [number class] == [[NSNumber numberWithBool:YES] class]; }

PropertyList toNumber(NSNumber* number) {
  if (isBoolean(number)) return {static_cast<bool>(number.boolValue)};
  const std::string_view type = number.objCType;
  if (type == @encode(double) || type == @encode(float)) return {number.doubleValue};
  NSNumber* maxSigned = [NSNumber numberWithLongLong:std::numeric_limits<long long>::max()];
  if ([number compare:maxSigned] == NSOrderedDescending) {
    return {static_cast<std::uint64_t>(number.unsignedLongLongValue)};
  }
  return {static_cast<std::int64_t>(number.longLongValue)};
}

std::optional<PropertyList> toArray(NSArray* objects) {
  PropertyListArray array;
  for (id object in objects) {
    auto element = toPropertyList(object);
    if (!element) return std::nullopt;
    array.push_back(std::move(*element));
  }
  return PropertyList{std::move(array)};
}

std::optional<PropertyList> toDictionary(NSDictionary* objects) {
  PropertyListDictionary dictionary;
  for (id key in objects) {
    auto entry = toPropertyList([objects objectForKey:key]);
    if (!entry || ![key isKindOfClass:[NSString class]]) return std::nullopt;
    dictionary.emplace(toUtf8(key), std::move(*entry));
  }
  return PropertyList{std::move(dictionary)};
}
}  // namespace

NSString* toNSString(std::string_view text) {
  for (const NSStringEncoding encoding : {NSUTF8StringEncoding, NSISOLatin1StringEncoding}) {
    NSString* decoded = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:encoding];
    if (decoded != nil) return decoded;
  }
  return @"";
}

std::string toUtf8(NSString* text) {
  @autoreleasepool {
    // Lossy, for half a surrogate pair: UTF-8 cannot say it [D].
    NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return {static_cast<const char*>(bytes.bytes), bytes.length};
  }
}

id toFoundation(const PropertyList& list) { return std::visit(MakeObject(), list.value); }

std::optional<PropertyList> toPropertyList(id object) {
  if ([object isKindOfClass:[NSString class]]) return PropertyList{toUtf8(object)};
  if ([object isKindOfClass:[NSNumber class]]) return toNumber(object);
  if ([object isKindOfClass:[NSDate class]]) {
    return PropertyList{PropertyListDate{[object timeIntervalSinceReferenceDate]}};
  }
  if ([object isKindOfClass:[NSData class]]) {
    NSData* data = object;
    return PropertyList{PropertyListData{{static_cast<const char*>(data.bytes), data.length}}};
  }
  if ([object isKindOfClass:[NSArray class]]) return toArray(object);
  if ([object isKindOfClass:[NSDictionary class]]) return toDictionary(object);
  return std::nullopt;
}
}  // namespace wendle
