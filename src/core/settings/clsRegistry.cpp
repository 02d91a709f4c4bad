#include "clsRegistry.h"

#include "SettingsStore.h"
#include "core/runtime/Vb.h"

namespace tessaly {

namespace {
constexpr int ValueBufferChars = 2048; // the buffer a value is read into
constexpr int32_t ErrorSuccess = 0;     // the write went through
constexpr int32_t ErrorAccessDenied = 5; // the store refused the write
} // namespace

void clsRegistry::GetRegValue(int32_t /*root*/, const QString& keyPath, const QString& valueName, QString& result) {
    result.clear();
    QString text = store_.read(keyPath, valueName);
    const int nul = static_cast<int>(text.indexOf(QChar(u'\0')));
    if (nul >= 0)
        text.truncate(nul);
    if (text.size() > ValueBufferChars)
        text.truncate(ValueBufferChars);
    result = text;
}

void clsRegistry::SetKeyValue(const QString& keyPath, const QString& valueName, const QVariant& value,
                              int32_t type) {
    int32_t status = ErrorSuccess;
    SetValueEx(keyPath, valueName, type, value, status);
}

void clsRegistry::SetValueEx(const QString& keyPath, const QString& valueName, int32_t type,
                             const QVariant& value, int32_t& status) {
    bool written = true;
    if (type == REG_SZ)
        written = store_.write(keyPath, valueName, vb::toText(value));
    else if (type == REG_DWORD)
        written = store_.write(keyPath, valueName, QString::number(vb::toInt32(value)));
    status = written ? ErrorSuccess : ErrorAccessDenied;
}

} // namespace tessaly
