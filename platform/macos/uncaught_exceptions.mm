#include "platform/uncaught_exceptions.h"

#import <Foundation/Foundation.h>
#include <cxxabi.h>
#include <objc/runtime.h>

#include <typeinfo>

#include "platform/macos/foundation_values.h"

namespace wendle {
namespace {

void (*reportCause)(const std::string& cause);
NSUncaughtExceptionHandler* previousHandler;

void handleUncaught(NSException* exception) {
  reportCause(toUtf8(exception.name) + ": " + toUtf8(exception.reason));
  if (previousHandler != nullptr) previousHandler(exception);
}

}  // namespace

void reportUncaughtSystemExceptions(void (*report)(const std::string& cause)) {
  reportCause = report;
  NSUncaughtExceptionHandler* handler = NSGetUncaughtExceptionHandler();
  if (handler == handleUncaught) return;
  previousHandler = handler;
  NSSetUncaughtExceptionHandler(handleUncaught);
}

// To C++ the type of an Objective-C exception has the name of its class.
bool isEndingBySystemException() {
  const std::type_info* type = abi::__cxa_current_exception_type();
  return type != nullptr && objc_lookUpClass(type->name()) != nil;
}

}  // namespace wendle
