// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/BaseElement.h"

#include <boost/any.hpp>

namespace shr {

BaseElement::BaseElement() = default;
BaseElement::~BaseElement() = default;

bool BaseElement::Option(const GString& key, const GString& value) {
  return !key.empty() && OptionImpl(key.ToLower(), value);
}

bool BaseElement::Option(const wchar_t* key, const GString& value) {
  return Option(GString(key), value);
}

bool BaseElement::Option(const GString& key, const wchar_t* value) {
  return Option(key, GString(value));
}

bool BaseElement::Option(const wchar_t* key, const wchar_t* value) {
  return Option(GString(key), GString(value));
}

bool BaseElement::Option(const GString& key, const boost::any& value) {
  return !key.empty() && OptionImpl(key.ToLower(), value);
}

bool BaseElement::Option(const wchar_t* key, const boost::any& value) {
  return Option(GString(key), value);
}

boost::any BaseElement::Option(const GString& key) const {
  return key.empty() ? boost::any() : OptionImpl(key.ToLower());
}

void BaseElement::Parent(const boost::any& parent) {
  ParentImpl(parent);
}

boost::any BaseElement::OptionImpl(const GString&) const {
  return boost::any();
}

bool BaseElement::OptionImpl(const GString&, const boost::any&) {
  return false;
}

bool BaseElement::OptionImpl(const GString&, const GString&) {
  return false;
}

void BaseElement::ParentImpl(const boost::any&) {}

}  // namespace shr
