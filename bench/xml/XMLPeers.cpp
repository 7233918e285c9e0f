// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <expat.h>
#include <libxml/parser.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <pugixml.hpp>

#include "bench/xml/XMLContender.h"

namespace shr::bench {
namespace {

[[noreturn]] void Abandon(const char* who, const std::string& path) {
  std::fprintf(stderr, "%s cannot read %s\n", who, path.c_str());
  std::abort();
}

// pugixml with its default options.

void Count(const pugi::xml_node& node, XMLCount& count) {
  if (node.type() == pugi::node_element) ++count.elements;
  for (const pugi::xml_attribute& attribute : node.attributes()) {
    ++count.attributes;
    count.attributeBytes += std::strlen(attribute.value());
  }
  for (const pugi::xml_node& child : node.children()) Count(child, count);
}

XMLTree ReadByPugixml(const std::string& path) {
  const auto document = std::make_shared<pugi::xml_document>();
  if (!document->load_file(path.c_str())) Abandon("pugixml", path);
  return {document, [document] {
            XMLCount count;
            Count(*document, count);
            return count;
          }};
}

// expat, by whose calls a plain tree of strings is built.

struct Element {
  std::string name, text;
  std::map<std::string, std::string> attributes;
  std::vector<std::unique_ptr<Element>> children;
};

struct Builder {
  std::unique_ptr<Element> root = std::make_unique<Element>();
  std::vector<Element*> open = {root.get()};
};

void XMLCALL StartElement(void* data, const char* name, const char** attributes) {
  auto& builder = *static_cast<Builder*>(data);
  auto& children = builder.open.back()->children;
  children.push_back(std::make_unique<Element>());
  Element& element = *children.back();
  element.name = name;
  for (; *attributes != nullptr; attributes += 2) {
    element.attributes.emplace(attributes[0], attributes[1]);
  }
  builder.open.push_back(&element);
}
void XMLCALL EndElement(void* data, const char*) {
  static_cast<Builder*>(data)->open.pop_back();
}
void XMLCALL Text(void* data, const char* text, int length) {
  static_cast<Builder*>(data)->open.back()->text.append(text, static_cast<std::size_t>(length));
}

void Count(const Element& element, XMLCount& count) {
  for (const auto& child : element.children) {
    ++count.elements;
    for (const auto& [name, value] : child->attributes) {
      ++count.attributes;
      count.attributeBytes += value.size();
    }
    Count(*child, count);
  }
}

XMLTree ReadByExpat(const std::string& path) {
  constexpr int PIECE = 64 * 1024;
  Builder builder;
  XML_Parser const parser = XML_ParserCreate(nullptr);
  XML_SetUserData(parser, &builder);
  XML_SetElementHandler(parser, StartElement, EndElement);
  XML_SetCharacterDataHandler(parser, Text);
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) Abandon("expat", path);
  for (bool isLast = false; !isLast;) {
    void* const buffer = XML_GetBuffer(parser, PIECE);
    const std::size_t size = std::fread(buffer, 1, PIECE, file);
    isLast = size < PIECE;
    const auto length = static_cast<int>(size);
    if (XML_ParseBuffer(parser, length, isLast) == XML_STATUS_ERROR) Abandon("expat", path);
  }
  std::fclose(file);
  XML_ParserFree(parser);
  const std::shared_ptr<Element> root = std::move(builder.root);
  return {root, [root] {
            XMLCount count;
            Count(*root, count);
            return count;
          }};
}

// libxml2.

void Count(const xmlNode* node, XMLCount& count) {
  for (; node != nullptr; node = node->next) {
    if (node->type != XML_ELEMENT_NODE) continue;
    ++count.elements;
    for (const xmlAttr* attribute = node->properties; attribute != nullptr;
         attribute = attribute->next) {
      ++count.attributes;
      count.attributeBytes +=
          std::strlen(reinterpret_cast<const char*>(attribute->children->content));
    }
    Count(node->children, count);
  }
}

XMLTree ReadByLibxml2(const std::string& path) {
  const std::shared_ptr<xmlDoc> document(xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE),
                                         xmlFreeDoc);
  if (document == nullptr) Abandon("libxml2", path);
  return {document, [document] {
            XMLCount count;
            Count(xmlDocGetRootElement(document.get()), count);
            return count;
          }};
}

}  // namespace

std::vector<XMLContender> XMLPeers() {
  return {{"pugixml", ReadByPugixml}, {"expat", ReadByExpat}, {"libxml2", ReadByLibxml2}};
}

}  // namespace shr::bench
