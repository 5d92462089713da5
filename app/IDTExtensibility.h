#pragma once

#include <windows.h>
#include <oaidl.h>

namespace snip {

// Interfaces of COM have no virtual destructor.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// What Visual Basic 5 calls an add-in through. The order of the functions is that of the environment's own
/// interface, which is not the order in which its manuals name them.
struct IDTExtensibility : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* VBInst, LONG ConnectMode, IDispatch* AddInInst,
                                                 SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnDisconnection(LONG RemoveMode, SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) = 0;
};

/// The interface of the environments after it, which begins with the same functions: Visual Basic 6 asks for
/// either of the two.
struct IDTExtensibility2 : IDTExtensibility {
  virtual HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) = 0;
};

/// The events of an entry of a command bar: Click, with the dispatch id 1, is the only one.
struct CommandBarControlEvents : IDispatch {};

/// The same of VBA's editor, whose entries tell them themselves.
struct CommandBarButtonEvents : IDispatch {};

#pragma GCC diagnostic pop

/// What `ConnectMode` is when the add-in is started by something other than the environment.
inline constexpr LONG kExternal = 2;

// The environments' numbers of the functions of IDTExtensibility2.
inline constexpr DISPID kOnConnectionMember = 1;
inline constexpr DISPID kOnDisconnectionMember = 2;
inline constexpr DISPID kOnAddInsUpdateMember = 3;
inline constexpr DISPID kOnStartupCompleteMember = 4;
inline constexpr DISPID kOnBeginShutdownMember = 5;

inline constexpr DISPID kClickEvent = 1;

/// The kind of control that an entry of a menu is.
inline constexpr LONG kButtonControl = 1;

}  // namespace snip

__CRT_UUID_DECL(snip::IDTExtensibility, 0x0002E151, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                0x46)
__CRT_UUID_DECL(snip::IDTExtensibility2, 0xB65AD801, 0xABAF, 0x11D0, 0xBB, 0x8B, 0x00, 0xA0, 0xC9, 0x0F, 0x27,
                0x44)
__CRT_UUID_DECL(snip::CommandBarControlEvents, 0x0002E198, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00,
                0x00, 0x46)
__CRT_UUID_DECL(snip::CommandBarButtonEvents, 0x000C0351, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00,
                0x00, 0x46)
