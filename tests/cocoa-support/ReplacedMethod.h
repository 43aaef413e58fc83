#pragma once

#import <Foundation/Foundation.h>
#import <objc/runtime.h>

/// Replaces a method's implementation as long as the object lives. For a class method, `kind` is
/// the class's own class.
class ReplacedMethod {
 public:
  template <class Result, class... Parameters>
  ReplacedMethod(Class kind, SEL selector, Result (*replacement)(id, SEL, Parameters...))
      : mMethod(class_getInstanceMethod(kind, selector)),
        mOriginal(method_setImplementation(
            mMethod, reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(replacement)))) {}
  ~ReplacedMethod() { method_setImplementation(mMethod, mOriginal); }
  ReplacedMethod(const ReplacedMethod&) = delete;
  ReplacedMethod& operator=(const ReplacedMethod&) = delete;

 private:
  Method mMethod;
  IMP mOriginal;
};
