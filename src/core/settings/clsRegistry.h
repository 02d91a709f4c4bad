#pragma once

#include <QString>
#include <QVariant>

namespace tessaly {

class SettingsStore;

// The small class through which the machine-wide settings are read and
// written. It has no state of its own; each use creates one and releases it.
class clsRegistry {
public:
    explicit clsRegistry(SettingsStore& store) : store_(store) {}

    // The root of the machine-wide store, as the platform numbered it.
    static constexpr int32_t HKEY_LOCAL_MACHINE = static_cast<int32_t>(0x80000002);
    static constexpr int32_t REG_SZ = 1;    // a string value
    static constexpr int32_t REG_DWORD = 4; // a 32-bit number

    // Reads `valueName` of `keyPath` into `result`; empty when absent or unreadable.
    void GetRegValue(int32_t root, const QString& keyPath, const QString& valueName, QString& result);
    // Writes a value of the given type; silent when the store cannot be written.
    void SetKeyValue(const QString& keyPath, const QString& valueName, const QVariant& value, int32_t type);

private:
    // Writes the value by its type: strings and 32-bit numbers; other types write nothing.
    void SetValueEx(const QString& keyPath, const QString& valueName, int32_t type, const QVariant& value,
                    int32_t& status);

    SettingsStore& store_;
};

} // namespace tessaly
