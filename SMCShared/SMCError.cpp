#include "SMCError.h"

#include <utility>

namespace ventaro {

namespace {

struct Describe {
    std::string operator()(const SMCError::ConnectionFailed& error) const {
        return "Verbindung zu AppleSMC fehlgeschlagen (Code: " + std::to_string(error.code) + ").";
    }
    std::string operator()(const SMCError::KeyNotFound& error) const {
        return "SMC-Schlüssel '" + error.key + "' wurde nicht gefunden.";
    }
    std::string operator()(const SMCError::ReadFailed& error) const {
        return "Lesen von SMC-Schlüssel '" + error.key +
               "' fehlgeschlagen (Status: " + std::to_string(error.status) + ").";
    }
    std::string operator()(const SMCError::WriteFailed& error) const {
        return "Schreiben auf SMC-Schlüssel '" + error.key +
               "' fehlgeschlagen (kern: " + std::to_string(error.kernelReturn) +
               ", smc: " + std::to_string(error.smcResult) + "). Root-Rechte erforderlich.";
    }
    std::string operator()(const SMCError::UnsupportedDataType& error) const {
        return "Nicht unterstützter SMC-Datentyp '" + error.type + "'.";
    }
    std::string operator()(const SMCError::ServiceNotFound& /*error*/) const {
        return "AppleSMC IOKit-Dienst wurde nicht gefunden.";
    }
};

} // namespace

SMCError::SMCError(Case details)
    : case_(std::move(details)), description_(std::visit(Describe{}, case_)) {}

SMCError SMCError::connectionFailed(std::int32_t code) { return SMCError(ConnectionFailed{code}); }

SMCError SMCError::keyNotFound(std::string key) { return SMCError(KeyNotFound{std::move(key)}); }

SMCError SMCError::readFailed(std::string key, std::uint8_t status) {
    return SMCError(ReadFailed{std::move(key), status});
}

SMCError SMCError::writeFailed(std::string key, std::int32_t kernelReturn, std::uint8_t smcResult) {
    return SMCError(WriteFailed{std::move(key), kernelReturn, smcResult});
}

SMCError SMCError::unsupportedDataType(std::string type) {
    return SMCError(UnsupportedDataType{std::move(type)});
}

SMCError SMCError::serviceNotFound() { return SMCError(ServiceNotFound{}); }

} // namespace ventaro
