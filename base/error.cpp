#include "base/error.h"

#include <cstring>

namespace wendle {

Error posixError(int errnoValue) {
  return {std::string(posixErrorDomain), errnoValue, std::strerror(errnoValue)};
}

std::string describe(const Error& error) {
  return "Error Domain=" + error.domain + " Code=" + std::to_string(error.code) + " \"" + error.description +
         "\"";
}

}  // namespace wendle
