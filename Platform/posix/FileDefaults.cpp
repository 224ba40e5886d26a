#include "FileDefaults.h"

#include "AtomicFile.h"
#include "FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QCborMap>
#include <QCborValue>
#include <QString>
#include <cerrno>
#include <cstdio>
#include <string_view>

namespace ventaro {

namespace {

namespace fs = std::filesystem;

/// No value for what the store does not know.
std::optional<DefaultsValue> fromCbor(const QCborValue& value) {
    if (value.isBool()) {
        return value.toBool();
    }
    if (value.isInteger() || value.isDouble()) {
        return value.toDouble();
    }
    if (value.isString()) {
        return value.toString().toStdString();
    }
    if (value.isByteArray()) {
        const QByteArray bytes = value.toByteArray();
        return DefaultsData(bytes.begin(), bytes.end());
    }
    return std::nullopt;
}

QCborValue toCbor(const DefaultsValue& value) {
    if (const auto* data = std::get_if<DefaultsData>(&value)) {
        return QByteArray(reinterpret_cast<const char*>(data->data()),
                          static_cast<qsizetype>(data->size()));
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return QString::fromStdString(*text);
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return *number;
    }
    return std::get<bool>(value);
}

} // namespace

void FileDefaults::logToStandardError(const std::string& line) {
    std::fprintf(stderr, "ventaro: %s\n", line.c_str());
}

FileDefaults::FileDefaults(fs::path file, Log log) : file_(std::move(file)), log_(std::move(log)) {
    load();
}

void FileDefaults::load() {
    constexpr qsizetype largest = 1 << 20; // bytes; far more than all settings take
    // Not blocking, for there may be anything in the file's place.
    const FileDescriptor file(::open(file_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file && (errno == ENOENT || errno == ENOTDIR)) {
        return;
    }
    struct stat status {};
    QByteArray bytes(largest + 1, Qt::Uninitialized);
    ssize_t size = -1;
    if (file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)) {
        size = ::read(file.get(), bytes.data(), static_cast<std::size_t>(bytes.size()));
    }
    if (size < 0) {
        isUnreadable_ = true;
        log_("the settings in " + file_.string() +
             " cannot be read; starting without them, and nothing is saved");
        return;
    }
    bytes.truncate(size);
    QCborParserError error;
    const QCborValue content = QCborValue::fromCbor(bytes, &error);
    if (size > largest || error.error != QCborError::NoError || error.offset != size ||
        !content.isMap()) {
        isDamaged_ = true;
        log_("the settings in " + file_.string() + " are damaged; starting without them");
        return;
    }
    for (const auto& [key, held] : content.toMap()) {
        if (auto value = fromCbor(held)) {
            values_.insert_or_assign(key.toString().toStdString(), *std::move(value));
        }
    }
}

void FileDefaults::setDamagedFileAside() {
    fs::path aside = file_;
    aside += ".damaged";
    std::error_code error;
    fs::rename(file_, aside, error);
    if (!error) {
        isDamaged_ = false;
        log_("the damaged settings are now " + aside.string());
    }
}

std::optional<DefaultsValue> FileDefaults::object(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void FileDefaults::store(const std::vector<Entry>& entries) {
    for (const auto& [key, value] : entries) {
        auto& held = values_.try_emplace(key).first->second;
        if (held != value) {
            isSaved_ = false;
            held = value;
        }
    }
    if (!isSaved_ && !isUnreadable_) {
        save();
    }
}

void FileDefaults::save() {
    constexpr mode_t ownerOnly = 0600;
    if (isDamaged_) {
        setDamagedFileAside();
    }
    try {
        QCborMap map;
        for (const auto& [key, value] : values_) {
            map.insert(QString::fromStdString(key), toCbor(value));
        }
        const QByteArray bytes = map.toCborValue().toCbor();
        createFolders(file_.parent_path());
        writeFileAtomically(file_,
                            std::string_view(bytes.data(), static_cast<std::size_t>(bytes.size())),
                            ownerOnly);
        isSaved_ = true;
    } catch (const std::exception& error) {
        log_(std::string("the settings were not saved: ") + error.what());
    }
}

} // namespace ventaro
