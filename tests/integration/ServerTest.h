#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ServerProcess.h"
#include "client/Session.h"
#include "client/SlotTracker.h"
#include "support/LogCapture.h"

namespace integration {

// An announcement of slots.
struct SlotUpdate {
  std::int64_t operation = -1;  // 0 added or turned, 1 removed
  std::vector<ravo::client::ShareMemoryInfo> slots;
};

// A server, and a client that has a session with it. At the end of a test the client leaves, and the server has to end
// well: by itself, with code 0, with no breach of the engine's rules, nothing of it left.
class ServerTest : public testing::Test {
 protected:
  // Starts the server to the end. Members of the engine's parameter text, and of the options: JSON without the braces.
  void StartServer(const std::string& params = "", const std::string& options = "");
  // Connects, and takes the first two events.
  void Connect();
  // Both.
  void Begin(const std::string& params = "", const std::string& options = "");
  // The same with a room of these participants, and joins it as "me".
  void JoinRoomOf(const std::string& participants);
  // The same with "ann" alone, who publishes as these members say, and subscribes to her.
  void WatchAnn(const std::string& members);

  // The reply's content. Anything but an answer in time fails the test.
  std::string Call(const std::string& method, const std::string& arguments = "[]");
  // Gives the engine another parameter text, without the braces.
  void SetParams(const std::string& params);
  // The content of the oldest event of that key that was not taken yet; fails the test if none comes.
  std::string Expect(const std::string& key);
  // The next announcement that names the stream.
  SlotUpdate NextUpdate(const std::string& sid);
  // Whether an event of that key has come: the server has answered a request meanwhile.
  bool HasCome(const std::string& key);

  // Subscribes to the video of a stream for the view "view".
  void Subscribe(const std::string& sid, int encoding = 0);
  ravo::client::Frame ReadFrame(const std::string& sid);

  // Ends the session; the server ends with it.
  void Leave();
  // The same, and looks at what the server leaves.
  void End();
  void TearDown() override { End(); }

  const support::LogCapture log_;  // takes the lines of the client's side
  std::unique_ptr<ServerProcess> server_;
  std::unique_ptr<ravo::client::Session> session_;
  bool hasTracker_ = true;  // it acknowledges the end of slots by itself
  std::unique_ptr<ravo::client::SlotTracker> tracker_;
  std::string init_;  // what the second event told
};

}  // namespace integration
