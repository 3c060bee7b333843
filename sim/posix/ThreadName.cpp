#include "../ThreadName.h"

#include <pthread.h>

#include <string>

namespace sim {

void NameThread(const char* name) {
  constexpr std::size_t kLongest = 15;
  pthread_setname_np(pthread_self(), std::string(name).substr(0, kLongest).c_str());
}

}  // namespace sim
