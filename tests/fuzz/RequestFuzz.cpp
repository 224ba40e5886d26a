#include "HelperIPC.h"
#include "JsonObject.h"
#include "RequestReader.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace ventaro;

void check(bool condition) {
    if (!condition) {
        std::abort();
    }
}

/// What decodes must survive the way there and back.
template<typename Decode>
void roundTrip(std::string_view json, Decode decode) {
    try {
        const auto record = decode(json);
        check(decode(encodeJson(record)) == record);
    } catch (const DecodingError& error) {
        check(std::string_view(error.what()).size() < 200);
    }
}

} // namespace

/// The first byte says in what pieces the rest arrives.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::size_t piece = 1U + data[0];
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);

    RequestReader pieces;
    for (std::size_t at = 0; at < text.size(); at += piece) {
        pieces.feed(text.substr(at, std::min(piece, text.size() - at)));
    }
    RequestReader whole;
    const RequestReader::State state = whole.feed(text);
    check(pieces.feed({}) == state && pieces.text() == whole.text());
    check(whole.text().size() <= maximumHelperMessageSize && text.starts_with(whole.text()));
    if (state == RequestReader::State::complete) {
        roundTrip(whole.text(), decodeHelperRequest);
    }
    roundTrip(text, decodeHelperResponse);
    return 0;
}
