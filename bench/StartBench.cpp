// From a new process to the first word to its client, and from the client's leaving to the end of the process.
#include <memory>

#include "Link.h"
#include "Server.h"
#include "Subjects.h"
#include "Table.h"

namespace bench {

void StartSubject(const std::string& out) {
  constexpr int kRounds = 50;
  constexpr Limit kLimit = AtMost(100);
  Samples start, stop;
  for (int round = 0; round < kRounds; ++round) {
    std::unique_ptr<Server> server;
    std::unique_ptr<Link> client;
    start.push_back(NanosecondsOf([&] {
                      server = std::make_unique<Server>();
                      client = std::make_unique<Link>(server->Pipe());
                      client->ReceiveWith("\"INIT\"");
                    }) /
                    1e6);
    stop.push_back(NanosecondsOf([&] {
                     client.reset();
                     server->Process().WaitEnd();
                   }) /
                   1e6);
  }
  Table table("start", "the life of a server process, with the simulated engine", "ms");
  table.Add("start", "process start to INIT", start).limit = kLimit;
  table.Add("stop", "client gone to process gone", stop).limit = kLimit;
  table.Finish(out);
}

}  // namespace bench
