#include "GValue.h"

#include "GKVTree.h"

// One unit defines the names of both types, because only that fixes their order of construction.

const std::string GValue::kStrElementName_value = "value";
const std::string GValue::kStrAttributeName_type = "type";
const std::string GValue::kStrAttributeName_isArray = "isArray";
const std::string GValue::kStrAttributeName_size = "size";
const std::string GValue::kStrElementName_str = "str";
const std::string GValue::kStrElementName_integer = "integer";
const std::string GValue::kStrTypeName_bool = "bool";
const std::string GValue::kStrTypeName_byte = "TByte";
const std::string GValue::kStrTypeName_ubyte = "TUByte";
const std::string GValue::kStrTypeName_short = "TSInt16";
const std::string GValue::kStrTypeName_long = "TSInt32";
const std::string GValue::kStrTypeName_ulong = "TUInt32";
const std::string GValue::kStrTypeName_ulongLong = "TUInt64";
const std::string GValue::kStrTypeName_double = "double";
const std::string GValue::kStrTypeName_string = "string";
const std::string GValue::kStrTypeName_kvtree = "kvtree";
const std::string GValue::kStrTypeName_NULL = "null";

const std::string GKVTree::kXMLElementName_kvtree = "kvtree";
const std::string GKVTree::kXMLElementName_kv = "kv";
const std::string GKVTree::kXMLElementAttr_key = "key";
