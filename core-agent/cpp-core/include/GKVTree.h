#pragma once

#include <string>

/// Names in the XML form of a tree of key and value pairs, for use from load to process exit.
class GKVTree {
 public:
  static const std::string kXMLElementName_kvtree;
  static const std::string kXMLElementName_kv;
  static const std::string kXMLElementAttr_key;
};
