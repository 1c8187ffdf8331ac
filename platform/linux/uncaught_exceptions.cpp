#include "platform/uncaught_exceptions.h"

namespace wendle {

void reportUncaughtSystemExceptions(void (* /*report*/)(const std::string& cause)) {}

bool isEndingBySystemException() { return false; }

}  // namespace wendle
