#pragma once

#include <windows.h>
#include <oleauto.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Com.h"
#include "platform/ComObject.h"

namespace snip::test {

/// What a hook returns to have its member answer that there is no object.
inline constexpr HRESULT kAnswerNothing = S_FALSE;

/// What happens to calls of an object: counts the references that clients hold and lets members fail.
class CallWatch {
 public:
  /// Set by tests for a member "Object.Member": runs before it; a failure is the member's.
  using Hook = std::function<HRESULT()>;

  LONG references = 0;
  std::map<std::string, Hook> hooks;
  int hooked = 0;           ///< How often one ran.
  std::string description;  ///< Of failures that are exceptions.
  int depth = 0;            ///< Of the members that run.
  std::string after;        ///< The members that clients called after a hook had run.

  HRESULT RunHook(const std::string& member);
};

/// Arguments in the order of the declaration.
class Arguments {
 public:
  explicit Arguments(const DISPPARAMS& parameters) : parameters_(parameters) {}
  std::size_t size() const { return parameters_.cArgs; }
  VARIANT& operator[](std::size_t index) const { return parameters_.rgvarg[size() - 1 - index]; }
  LONG Number(std::size_t index) const { return (*this)[index].lVal; }
  std::string Text(std::size_t index) const;
  IDispatch* Object(std::size_t index) const { return (*this)[index].pdispVal; }

 private:
  const DISPPARAMS& parameters_;
};

/// A late-bound object with the members that it is given.
class ScriptObject final : public WithoutTypeInfo<ComObject<IDispatch>> {
 public:
  /// What a member does; `result` may be null.
  using Function = std::function<HRESULT(const Arguments& arguments, VARIANT& result)>;
  struct Member {
    std::wstring name;
    WORD kind = DISPATCH_METHOD;
    std::vector<VARTYPE> arguments;  ///< Their types.
    Function function;
  };

  ScriptObject(CallWatch& watch, std::string name, std::vector<Member> members);

  ComPtr<IUnknown> source;  ///< Of its events; null when it does not tell them itself.

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

 private:
  CallWatch& watch_;
  std::string name_;
  std::vector<Member> members_;
};

/// Puts a new object's only reference into a result.
HRESULT Answer(VARIANT& result, IDispatch* object);
HRESULT Answer(VARIANT& result, LONG number);
HRESULT Answer(VARIANT& result, const std::string& text);

}  // namespace snip::test
