#include "WakeUp.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace ventaro {

WakeUp::WakeUp() : pipe_(makePipe(Blocking::no)) {
    if (!pipe_.reading) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
}

void WakeUp::signal() const {
    // A full pipe has woken the thread already.
    [[maybe_unused]] const ssize_t written = ::write(pipe_.writing.get(), "", 1);
}

void WakeUp::take() const {
    std::array<char, 64> bytes;
    while (::read(pipe_.reading.get(), bytes.data(), bytes.size()) ==
           static_cast<ssize_t>(bytes.size())) {
    }
}

} // namespace ventaro
