#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "platform/Com.h"
#include "ui/main/HostEnvironment.h"

namespace snip {

/// Whether an environment is still connected; all that it has handed out looks at the same one.
using HostLink = std::shared_ptr<const bool>;

/// An object of the development environment, whose members are called by their names: that needs no type
/// library of the environment's. Operations throw `HostError`. While one waits for the environment other
/// messages come in, and this may be reset by them; after a disconnection the environment is not called any
/// more.
class LateBound {
 public:
  LateBound() = default;
  LateBound(ComPtr<IDispatch> object, HostLink link) : object_(std::move(object)), link_(std::move(link)) {}
  /// The object in a result; none when it holds nothing.
  LateBound(const Variant& result, HostLink link);

  /// Whether there is an object at all: the environment answers with nothing where it has none.
  bool exists() const { return static_cast<bool>(object_); }
  IDispatch* get() const { return object_.get(); }

  /// Asks the object's process for a sign of life.
  void Ping() const;

 protected:
  using Arguments = std::initializer_list<VARIANT>;  ///< In the order of the declaration; the caller's own.

  /// Reads a property or calls a method.
  Variant Call(const wchar_t* member, Arguments arguments = {}) const;
  /// Calls a method also after the disconnection, which it is a part of.
  void CallAtTheEnd(const wchar_t* member) const;
  void Put(const wchar_t* member, const Variant& value) const;
  /// Sets a property to an object itself.
  void PutReference(const wchar_t* member, IDispatch* object) const;
  /// The object that a member answers with.
  template <class Object>
  Object Get(const wchar_t* member, Arguments arguments = {}) const {
    const HostLink link = link_;  // this may be gone after the call
    return Object(Call(member, arguments), link);
  }

  LONG Number(const wchar_t* member, Arguments arguments = {}) const;
  std::string Text(const wchar_t* member, Arguments arguments = {}) const;

  /// A further owner of the same object.
  template <class Object>
  Object Shared() const {
    return Object(ComPtr<IDispatch>::Share(get()), link_);
  }

 private:
  void Set(WORD kind, const wchar_t* member, VARIANT argument) const;
  static Variant Invoke(ComPtr<IDispatch> object, HostLink link, const wchar_t* member, WORD kind,
                        DISPPARAMS& parameters);

  ComPtr<IDispatch> object_;
  HostLink link_;
};

Variant TextVariant(const std::string& text);

/// The environment has answered that it does not do what it was asked.
class HostRefused : public HostError {
 public:
  using HostError::HostError;
};

/// Throws `HostGone` when the result of a call means that the environment is not there any more, `HostBusy`
/// when it has no time, and otherwise `HostRefused` unless the call succeeded.
void ThrowIfFailed(HRESULT result);

}  // namespace snip
