#include "CoreApplication.h"

#include "core/common/CommonRoutines.h"
#include "core/runtime/Vb.h"
#include "core/settings/clsRegistry.h"

namespace tessaly {

CoreApplication::CoreApplication(UiPort& uiPort, Waiter& w, AppHome appHome)
    : ApplicationBase(uiPort, w, std::move(appHome)) {
    registerNames();
}

CoreApplication::~CoreApplication() = default;

QString CoreApplication::versionText() {
    return QStringLiteral("%1.%2.%3")
        .arg(TESSALY_VERSION_MAJOR)
        .arg(TESSALY_VERSION_MINOR)
        .arg(TESSALY_VERSION_PATCH);
}

void CoreApplication::releaseInstanceLock() {
    if (lock_)
        lock_->unlock();
    lock_.reset();
}

void CoreApplication::endProcess() {
    releaseInstanceLock();
    ApplicationBase::endProcess();
}

bool CoreApplication::Main() {
    // 1. A second instance on the same home ends at once, without a word.
    lock_ = std::make_unique<QLockFile>(home.lockPath());
    lock_->setStaleLockTime(0);
    if (!lock_->tryLock(0)) {
        lock_.reset();
        return false;
    }
    try {
        // 2. to 4. The nine machine-wide values, in this order.
        clsRegistry gRegistry(machineSettings);
        auto read = [&](const char* name) {
            QString value;
            gRegistry.GetRegValue(clsRegistry::HKEY_LOCAL_MACHINE, MachineKey, QString::fromLatin1(name),
                                  value);
            return value;
        };
        gDatabaseLocation = read("DB_Location");
        gFileStore = read("FileStore");
        gTempFileStore = read("TempFileStore");
        gCopyrightText = read("CopyrightText");
        gDisplayAddress = read("DisplayAddress");
        gDisplayPlanData = read("DisplayPlanData");
        gDefaultPageZoom = vb::toInt16(read("DefaultPageZoom"));
        gTemplateFolder = read("TemplateFolder");
        gTemplateZoom = vb::toInt16(read("TemplateZoom"));
        // 5. The splash, shown modelessly; Main is then over.
        Form& splash = form(QStringLiteral("frmSplash"));
        show(splash, false);
    } catch (const RuntimeError& e) {
        ui.msgBox(QStringLiteral("An Error Occured In The Sub Main Process: %1 - %2")
                      .arg(e.number())
                      .arg(e.description()),
                  mb::Critical, AppTitle);
    }
    // Main is over. With no window of the program left (Main failed before
    // the splash), the process ends with it.
    if (loadedForms().empty())
        endProcess();
    return true;
}

void CoreApplication::registerNames() {
    auto text = [this](const char* name, QString& v) {
        variable(
            QString::fromLatin1(name), [&v] { return QVariant(v); },
            [&v](const QVariant& x) { v = vb::toText(x); });
    };
    text("gDatabaseLocation", gDatabaseLocation);
    text("gConnectionString", gConnectionString);
    text("gFileStore", gFileStore);
    text("gTempFileStore", gTempFileStore);
    text("gCopyrightText", gCopyrightText);
    text("gDisplayAddress", gDisplayAddress);
    text("gDisplayPlanData", gDisplayPlanData);
    text("gTemplateFolder", gTemplateFolder);
    text("gPlanFileName", gPlanFileName);
    auto i16 = [this](const char* name, int16_t& v) {
        variable(
            QString::fromLatin1(name), [&v] { return QVariant(static_cast<int>(v)); },
            [&v](const QVariant& x) { v = vb::toInt16(x); });
    };
    i16("gDefaultPageZoom", gDefaultPageZoom);
    i16("gTemplateZoom", gTemplateZoom);
    i16("gGridStep", gGridStep);
    auto i32 = [this](const char* name, int32_t& v) {
        variable(
            QString::fromLatin1(name), [&v] { return QVariant(v); },
            [&v](const QVariant& x) { v = vb::toInt32(x); });
    };
    i32("gOpenSiteID", gOpenSiteID);
    i32("gBackupTicks", gBackupTicks);
    i32("gGuideOriginX", gGuideOriginX);
    i32("gGuideOriginY", gGuideOriginY);
    variable(QStringLiteral("gConnection"), [this] { return QVariant(connectionOpen_); });

    routine(QStringLiteral("FileExists"),
            [](QVariantList& a) { return QVariant(common::FileExists(vb::toText(a.value(0)))); });
    routine(QStringLiteral("MinutesToTimeText"), [](QVariantList& a) {
        int16_t minutes = vb::toInt16(a.value(0));
        const QString t = common::MinutesToTimeText(minutes);
        if (!a.isEmpty())
            a[0] = static_cast<int>(minutes);
        return QVariant(t);
    });
    routine(QStringLiteral("ValidatePositive"),
            [this](QVariantList& a) { return QVariant(common::ValidatePositive(*this, a.value(0))); });
    routine(QStringLiteral("ReportError"), [this](QVariantList& a) {
        common::ReportError(*this, vb::toText(a.value(0)), vb::toText(a.value(1)), vb::toText(a.value(2)));
        return QVariant();
    });
    auto joinFilter = [](const QVariantList& a) {
        QStringList parts;
        for (const QVariant& v : a)
            parts << vb::toText(v);
        return parts.join(QLatin1Char('|'));
    };
    routine(QStringLiteral("ShowSaveDialog"), [this, joinFilter](QVariantList& a) {
        return QVariant(common::ShowSaveDialog(*this, joinFilter(a)));
    });
    routine(QStringLiteral("ShowOpenDialog"), [this, joinFilter](QVariantList& a) {
        return QVariant(common::ShowOpenDialog(*this, joinFilter(a)));
    });
    routine(QStringLiteral("ShowColourDialog"), [this](QVariantList& a) {
        uint32_t colour = static_cast<uint32_t>(vb::toDouble(a.value(0)));
        return QVariant(static_cast<qint64>(common::ShowColourDialog(*this, colour)));
    });
    // The form is given by name or as the form itself.
    routine(QStringLiteral("SelectAllText"), [this](QVariantList& a) {
        auto* named = dynamic_cast<Form*>(toObject(a.value(0)).get());
        common::SelectAllText(named ? *named : form(vb::toText(a.value(0))));
        return QVariant();
    });
    routine(QStringLiteral("CloseDatabase"), [this](QVariantList&) {
        CloseDatabase();
        return QVariant();
    });
}

} // namespace tessaly
