#pragma once

#include <cstdint>

namespace TESSARIN_COMMON {

// What a transport reports: a code below 0 with its text, then, as a second report, the system's error with its own.
struct PipeFailure {
  std::int32_t code;
  const char* text;
};

// Reported alone where it was the memory for the connection that was missing.
inline constexpr PipeFailure kCreatePortFailed{-1003, "create io completion port failed."};

inline constexpr PipeFailure kClientConnectedAlready{-1000, "client handle is invalid, no need to connect again."};
inline constexpr PipeFailure kClientNotConnected{-1000, "client handle is invalid, no need to disconnect again."};
inline constexpr PipeFailure kClientNameEmpty{-1001, "pipe name is empty."};
inline constexpr PipeFailure kClientWaitTimeout{-1002, "wait named pipe timeout."};
inline constexpr PipeFailure kClientOpenFailed{-1004, "create file(client connect) failed."};
inline constexpr PipeFailure kClientBindFailed{-1005, "client pipe bind to io completion port failed."};

inline constexpr PipeFailure kServerBindFailed{-2001, "server pipe bind to io completion port failed."};
inline constexpr PipeFailure kServerConnectFailed{-2002, "server pipe wait connect failed."};
inline constexpr PipeFailure kServerDisconnectFailed{-2003, "server pipe disconnect failed."};

// The failures that both ends meet, each under its own codes.
struct LinkFailures {
  PipeFailure send;
  PipeFailure recv;
  PipeFailure wait;
  PipeFailure woken;  // reported alone
};
inline constexpr LinkFailures kClientLinkFailures{{-1006, "client pipe send data failed."},
                                                  {-1007, "client pipe receive data failed."},
                                                  {-1008, "wait receive data failed."},
                                                  {-1009, "wait receive data failed."}};
inline constexpr LinkFailures kServerLinkFailures{{-2004, "server pipe send data failed."},
                                                  {-2005, "server pipe recv data failed."},
                                                  {-2006, "server pipe wait receive data failed."},
                                                  {-2007, "server pipe wait receive data failed."}};

}  // namespace TESSARIN_COMMON
