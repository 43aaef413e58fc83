#pragma once

/// Empty private base of classes that can be neither copied nor moved.
class GNoncopyable {
 public:
  GNoncopyable(const GNoncopyable&) = delete;
  GNoncopyable& operator=(const GNoncopyable&) = delete;

 protected:
  GNoncopyable() = default;
  ~GNoncopyable() = default;
};
