#include "Firing.h"

#include <atomic>
#include <cstdio>
#include <exception>
#include <thread>
#include <vector>

#include "Callbacks.h"
#include "ThreadName.h"
#include "WriteJson.h"
#include "common/JsonDocument.h"

namespace sim {

Volley Volley::FromJson(const TESSARIN_COMMON::JsonValue& json) {
  Volley volley;
  volley.entry = json["entry"].GetString();
  rapidjson::StringBuffer buffer;
  JsonOut out(buffer);
  json["args"].Accept(out);
  volley.arguments = buffer.GetString();
  if (json.HasMember("threads")) volley.threads = json["threads"].GetInt64();
  if (json.HasMember("times")) volley.times = json["times"].GetInt64();
  return volley;
}

std::int64_t Volley::Fire() const {
  if (threads == 1) return FireInTurn();
  std::atomic<std::int64_t> fired{0};
  std::vector<std::thread> crew;
  for (std::int64_t i = 0; i < threads; ++i) {
    crew.emplace_back([&] {
      NameThread("sim_volley");
      fired += FireInTurn();
    });
  }
  for (auto& thread : crew) thread.join();
  return fired;
}

std::int64_t Volley::FireInTurn() const {
  std::int64_t fired = 0;
  for (std::int64_t i = 0; i < times; ++i) fired += FireOnce() ? 1 : 0;
  return fired;
}

bool Volley::FireOnce() const try {
  const NamedCallback* callback = FindCallback(entry);
  if (callback == nullptr) throw std::runtime_error("no such registration");
  TESSARIN_COMMON::JsonDocument document;
  document.Parse(arguments.data(), arguments.size());
  if (document.HasParseError()) throw std::runtime_error("the arguments are no JSON");
  return callback->emit(document);
} catch (const std::exception& failure) {
  std::fprintf(stderr, "simulated engine: %s is not fired: %s\n", entry.c_str(), failure.what());
  return false;
}

}  // namespace sim
