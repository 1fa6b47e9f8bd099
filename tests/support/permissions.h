#pragma once
// Read-only folders for tests that may run as root.  Root passes over the mode bits, so
// a folder made read-only would still take new files; with the calling thread's power
// to override file permissions dropped for the duration, the kernel checks them as for
// anyone else.  Elsewhere (not root) the call changes nothing.

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <functional>

namespace sedra::test {

inline void WithoutPermissionOverride(const std::function<void()>& body) {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct saved[2]{};
  const bool got = syscall(SYS_capget, &header, saved) == 0;
  if (got) {
    __user_cap_data_struct dropped[2] = {saved[0], saved[1]};
    dropped[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH) | (1u << CAP_FOWNER));
    syscall(SYS_capset, &header, dropped);
  }
  body();
  if (got) syscall(SYS_capset, &header, saved);
}

}  // namespace sedra::test
