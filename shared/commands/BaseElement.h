// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `BaseElement`, what dialogs and tool windows have in common: options by name and a parent.
///
/// Concrete elements derive from shared/commands/ModalElement.h or ModelessElement.h. Values of
/// type boost::any are declared only: who passes, receives or overrides them includes
/// <boost/any.hpp>.
///
///     std::unique_ptr<ModalElement> dialog = ModalElementFactory::Construct(L"Settings");
///     dialog->Option(L"Title", L"Map settings");
///     dialog->Parent(mainWindow);
///
/// Threads: one thread an element.

#pragma once

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace boost {
class any;
}

namespace shr {

/// A part of the user interface that the application implements.
class SHARED_API BaseElement {
public:
  BaseElement(const BaseElement&) = delete;
  BaseElement& operator=(const BaseElement&) = delete;

  /// Sets the option `key`, in any letter case, and returns true when the element took it. An empty
  /// key gives false.
  bool Option(const GString& key, const GString& value);
  bool Option(const wchar_t* key, const GString& value);
  bool Option(const GString& key, const wchar_t* value);
  bool Option(const wchar_t* key, const wchar_t* value);
  bool Option(const GString& key, const boost::any& value);
  bool Option(const wchar_t* key, const boost::any& value);

  /// Returns the value of the option `key`; empty when the key is empty or unknown.
  boost::any Option(const GString& key) const;

  /// Tells the element the window or object that it belongs to.
  void Parent(const boost::any& parent);

protected:
  BaseElement();
  virtual ~BaseElement();

private:
  /// Returns the value of the option `key`, which is in lower case and not empty; by default empty.
  virtual boost::any OptionImpl(const GString& key) const;
  /// Set the option `key`, which is in lower case and not empty, and return whether it was taken;
  /// by default false.
  virtual bool OptionImpl(const GString& key, const boost::any& value);
  virtual bool OptionImpl(const GString& key, const GString& value);
  /// Takes the parent; by default it is ignored.
  virtual void ParentImpl(const boost::any& parent);
};

}  // namespace shr
