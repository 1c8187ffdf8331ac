#include "base/path.h"

#include <algorithm>

namespace wendle {
static std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path;
}

std::vector<std::string> pathComponents(std::string_view path) {
  std::vector<std::string> components;
  if (path.starts_with('/')) components.emplace_back("/");
  while (!path.empty()) {
    const std::string_view component = path.substr(0, path.find('/'));
    if (!component.empty()) components.emplace_back(component);
    path.remove_prefix(std::min(path.size(), component.size() + 1));
  }
  return components;
}

std::string pathExtension(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::string_view name = path.substr(path.rfind('/') + 1);  // npos + 1 is 0
  const size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  const std::string_view extension = name.substr(dot + 1);
  return extension.find(' ') == std::string_view::npos ? std::string(extension) : std::string();
}

std::string deletingLastPathComponent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  return std::string(withoutTrailingSlashes(path.substr(0, std::max<size_t>(slash, 1))));
}
}  // namespace wendle
