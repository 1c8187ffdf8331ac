#pragma once

// What this project uses of Foundation, for builds without Apple's SDK. Names, types and values are those of
// Apple's documentation; the numbers are part of the binary interface [D].

#include <limits.h>
#include <objc/NSObject.h>
#include <objc/objc.h>

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))
#define NS_NOESCAPE __attribute__((noescape))

NS_ASSUME_NONNULL_BEGIN

@class NSArray<ObjectType>, NSData, NSError, NSString;

typedef double NSTimeInterval;
typedef NSString* NSURLResourceKey;

typedef struct {
  NSUInteger location;
  NSUInteger length;
} NSRange;

enum : NSInteger { NSNotFound = LONG_MAX };
enum NSComparisonResult : NSInteger { NSOrderedAscending = -1, NSOrderedSame, NSOrderedDescending };

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4, NSISOLatin1StringEncoding = 5 };

typedef NSUInteger NSStringCompareOptions;
enum : NSStringCompareOptions { NSCaseInsensitiveSearch = 1 };

typedef NSUInteger NSURLBookmarkCreationOptions;

enum NSSearchPathDirectory : NSUInteger {
  NSApplicationDirectory = 1,
  NSLibraryDirectory = 5,
  NSUserDirectory = 7,
  NSApplicationSupportDirectory = 14
};

typedef NSUInteger NSSearchPathDomainMask;
enum : NSSearchPathDomainMask { NSUserDomainMask = 1, NSLocalDomainMask = 2 };

extern "C" NSString* NSHomeDirectory(void);
extern "C" NSArray<NSString*>* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                                                   NSSearchPathDomainMask domainMask,
                                                                   BOOL expandTilde);

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

@interface NSObject (NSKeyValueObserving)
+ (BOOL)automaticallyNotifiesObserversForKey:(NSString*)key;
- (void)willChangeValueForKey:(NSString*)key;
- (void)didChangeValueForKey:(NSString*)key;
@end

@interface NSString : NSObject
@property(readonly) NSUInteger length;
@property(readonly, copy) NSString* lowercaseString;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
- (BOOL)isEqualToString:(NSString*)string;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
- (NSRange)rangeOfString:(NSString*)searched options:(NSStringCompareOptions)mask;
@end

@interface NSNumber : NSObject
@property(readonly) const char* objCType NS_RETURNS_INNER_POINTER;
@property(readonly) BOOL boolValue;
@property(readonly) double doubleValue;
@property(readonly) long long longLongValue;
@property(readonly) unsigned long long unsignedLongLongValue;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithDouble:(double)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value;
- (NSComparisonResult)compare:(NSNumber*)other;
@end

@interface NSData : NSObject
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes NS_RETURNS_INNER_POINTER;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@end

@interface NSDate : NSObject
@property(readonly) NSTimeInterval timeIntervalSinceReferenceDate;
+ (instancetype)dateWithTimeIntervalSinceReferenceDate:(NSTimeInterval)seconds;
@end

@interface NSArray<ObjectType> : NSObject <NSFastEnumeration>
- (void)enumerateObjectsUsingBlock:(void(NS_NOESCAPE ^)(ObjectType object, NSUInteger index, BOOL* stop))
                                       block;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)object;
@end

@interface NSDictionary<KeyType, ObjectType> : NSObject <NSFastEnumeration>
- (nullable ObjectType)objectForKey:(KeyType)key;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
+ (instancetype)dictionary;
- (void)setObject:(ObjectType)object forKey:(KeyType)key;
@end

@interface NSURL : NSObject
@property(nullable, readonly, copy) NSString* absoluteString;
@property(nullable, readonly, copy) NSString* path;
+ (nullable instancetype)URLWithString:(NSString*)text;
+ (NSURL*)fileURLWithPath:(NSString*)path;
+ (NSURL*)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDirectory;
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDirectory
                                relativeToURL:(nullable NSURL*)baseURL;
- (nullable NSData*)bookmarkDataWithOptions:(NSURLBookmarkCreationOptions)options
             includingResourceValuesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                              relativeToURL:(nullable NSURL*)baseURL
                                      error:(NSError* _Nullable* _Nullable)error;
@end

@interface NSException : NSObject
@property(readonly, copy) NSString* name;
@property(nullable, readonly, copy) NSString* reason;
@end

typedef void NSUncaughtExceptionHandler(NSException* exception);
extern "C" NSUncaughtExceptionHandler* _Nullable NSGetUncaughtExceptionHandler(void);
extern "C" void NSSetUncaughtExceptionHandler(NSUncaughtExceptionHandler* _Nullable handler);

@interface NSUUID : NSObject
@property(readonly, copy) NSString* UUIDString;
+ (instancetype)UUID;
@end

@interface NSUserDefaults : NSObject
- (nullable instancetype)initWithSuiteName:(nullable NSString*)suiteName;
- (nullable id)objectForKey:(NSString*)key;
- (void)setObject:(nullable id)value forKey:(NSString*)key;
- (BOOL)synchronize;
@end

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly, copy) NSArray<NSString*>* arguments;
@end

@interface NSBundle : NSObject
+ (NSBundle*)bundleForClass:(Class)aClass;
@end

NS_ASSUME_NONNULL_END
