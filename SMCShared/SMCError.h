#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <variant>

namespace ventaro {

/// A failure of the SMC layer. `errorDescription()` is the German sentence that the user reads.
class SMCError : public std::exception {
public:
    /// Opening the user client failed; `code` is the kernel return code.
    struct ConnectionFailed {
        std::int32_t code;
        bool operator==(const ConnectionFailed&) const = default;
    };
    /// The SMC has no key information for `key`.
    struct KeyNotFound {
        std::string key;
        bool operator==(const KeyNotFound&) const = default;
    };
    /// `status`: the SMC's result byte; 0 if only the kernel call failed.
    struct ReadFailed {
        std::string key;
        std::uint8_t status;
        bool operator==(const ReadFailed&) const = default;
    };
    struct WriteFailed {
        std::string key;
        std::int32_t kernelReturn;
        std::uint8_t smcResult;
        bool operator==(const WriteFailed&) const = default;
    };
    /// A value cannot be written in the data type `type`.
    struct UnsupportedDataType {
        std::string type;
        bool operator==(const UnsupportedDataType&) const = default;
    };
    /// No AppleSMC service is registered.
    struct ServiceNotFound {
        bool operator==(const ServiceNotFound&) const = default;
    };
    using Case = std::variant<ConnectionFailed, KeyNotFound, ReadFailed, WriteFailed,
                              UnsupportedDataType, ServiceNotFound>;

    static SMCError connectionFailed(std::int32_t code);
    static SMCError keyNotFound(std::string key);
    static SMCError readFailed(std::string key, std::uint8_t status);
    static SMCError writeFailed(std::string key, std::int32_t kernelReturn, std::uint8_t smcResult);
    static SMCError unsupportedDataType(std::string type);
    static SMCError serviceNotFound();

    const Case& details() const { return case_; }
    const std::string& errorDescription() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

    bool operator==(const SMCError& other) const { return case_ == other.case_; }

private:
    explicit SMCError(Case details);

    Case case_;
    std::string description_;
};

} // namespace ventaro
