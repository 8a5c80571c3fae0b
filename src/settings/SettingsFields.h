#pragma once
// The stored values of the settings record as a table: one row per value, in the order in
// which they are read and written. Texts are stored as strings and cut to their field size
// minus one on reading; every number, flag and array is stored as bytes of exactly its
// field size (little-endian) and is only taken when the stored size matches exactly.
#include <cstdint>
#include <span>
#include <string>

namespace verdin {

struct Settings;

enum class FieldKind { Text, Binary };

struct SettingsField {
    const char* name;
    FieldKind kind;
    // Text: the size of the stored field's buffer (at most size - 1 characters are kept).
    // Binary: the exact number of bytes stored.
    uint32_t size;
    std::string* (*text)(Settings&);  // Text fields
    void* (*bytes)(Settings&);        // Binary fields: the field's bytes in memory
};

std::span<const SettingsField> SettingsFields();

// The field's value as stored: a text as is, a binary field as its bytes.
std::string StoredBytes(const SettingsField& field, const Settings& settings);
// Takes a stored value under the size rule; false (and the field untouched) when it does
// not fit: an empty text, or bytes of another size than the field's.
bool TakeStoredBytes(const SettingsField& field, Settings& settings, const std::string& stored);

}  // namespace verdin
