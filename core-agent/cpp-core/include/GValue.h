#pragma once

#include <string>

/// Names in the XML form of a value, for use from load to process exit.
class GValue {
 public:
  static const std::string kStrElementName_value;
  static const std::string kStrAttributeName_type;
  static const std::string kStrAttributeName_isArray;
  static const std::string kStrAttributeName_size;
  static const std::string kStrElementName_str;
  static const std::string kStrElementName_integer;
  static const std::string kStrTypeName_bool;
  static const std::string kStrTypeName_byte;
  static const std::string kStrTypeName_ubyte;
  static const std::string kStrTypeName_short;
  static const std::string kStrTypeName_long;
  static const std::string kStrTypeName_ulong;
  static const std::string kStrTypeName_ulongLong;
  static const std::string kStrTypeName_double;
  static const std::string kStrTypeName_string;
  static const std::string kStrTypeName_kvtree;
  static const std::string kStrTypeName_NULL;
};
