#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "common/Platform.h"
#include "ipc/NamedPipeClient.h"
#include "ipc/NamedPipeServer.h"
#include "support/PipeName.h"

namespace ipc_test {

// Keeps what a transport reports. A report of the system's error is kept as its text alone: its number is its own.
class Reports final : public TESSARIN_COMMON::IIpcErrorReporter {
 public:
  void OnIpcError(std::int32_t code, const char* text) override {
    const std::lock_guard lock(mutex_);
    all_.emplace_back(code, text);
  }
  // Takes the reports so far: each of a code with its text, and "system" where a second one followed it, with the text
  // that the system has for that number.
  std::vector<std::string> Take() {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> lines;
    for (const auto& [code, text] : std::exchange(all_, {})) {
      const bool system = code > 0 && text == TESSARIN_COMMON::SystemErrorText(code);
      lines.push_back(system ? "system" : std::to_string(code) + ' ' + text);
    }
    return lines;
  }

 private:
  std::mutex mutex_;
  std::vector<std::pair<std::int32_t, std::string>> all_;
};

// The result of a posted read.
inline std::int32_t WaitForEnd(TESSARIN_COMMON::IIpcDataRecv& end) {
  std::int32_t result = 0;
  while (result == 0) result = end.WaitRecvData();
  return result;
}

inline std::int32_t ReadOnce(TESSARIN_COMMON::IIpcDataRecv& end, void* buffer, std::uint32_t size) {
  return end.RecvData(buffer, size) ? WaitForEnd(end) : 0;
}

// So many bytes, which may come in pieces; fewer when the connection ends.
inline std::string ReadText(TESSARIN_COMMON::IIpcDataRecv& end, std::uint32_t size) {
  std::string text(size, '\0');
  std::uint32_t read = 0;
  for (std::int32_t count = 1; read < size && count > 0; read += static_cast<std::uint32_t>(std::max(0, count))) {
    count = ReadOnce(end, text.data() + read, size - read);
  }
  text.resize(read);
  return text;
}

// Two ends under a name of their own, with a reporter each.
class PipeTest : public testing::Test {
 protected:
  PipeTest() {
    server_.SetErrorReporter(&serverReports_);
    client_.SetErrorReporter(&clientReports_);
    client_.SetSleep([this](std::chrono::milliseconds time) { slept_.push_back(static_cast<int>(time.count())); });
  }

  // A client may come before the server waits for it.
  void ConnectBoth() {
    ASSERT_TRUE(server_.Open());
    ASSERT_TRUE(client_.Connect(0));
    ASSERT_TRUE(server_.WaitConnect());
  }

  const std::string name_ = support::UniquePipeName();
  Reports serverReports_;
  Reports clientReports_;
  std::vector<int> slept_;
  TESSARIN_COMMON::NamedPipeServer server_{name_};
  TESSARIN_COMMON::NamedPipeClient client_{name_};
};

}  // namespace ipc_test
