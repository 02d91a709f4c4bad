#include "ProjectSchema.h"

#include <QHash>

namespace tessaly::db {

const FieldDef* TableDef::field(const QString& fieldName) const {
    for (const FieldDef& f : fields)
        if (f.name.compare(fieldName, Qt::CaseInsensitive) == 0)
            return &f;
    return nullptr;
}

namespace {

FieldDef plain(const QString& name, FieldType type) {
    FieldDef f;
    f.name = name;
    f.type = type;
    return f;
}

// A field that refers to a site; the site's deletion takes the row with it.
FieldDef siteLink() {
    FieldDef f = plain(QStringLiteral("SiteID"), FieldType::Long);
    f.references = QStringLiteral("Sites");
    f.cascade = true;
    f.indexed = true;
    return f;
}

FieldDef addedNow(const QString& name) {
    FieldDef f = plain(name, FieldType::Date);
    f.defaultNow = true;
    return f;
}

QList<TableDef> buildTables() {
    using T = FieldType;
    QList<TableDef> tables;

    tables.append({QStringLiteral("Clients"),
                   {plain(QStringLiteral("ClientID"), T::Counter), plain(QStringLiteral("Client"), T::Text),
                    plain(QStringLiteral("Address"), T::Text), plain(QStringLiteral("Area"), T::Text),
                    plain(QStringLiteral("Town"), T::Text), plain(QStringLiteral("County"), T::Text),
                    plain(QStringLiteral("PostCode"), T::Text), plain(QStringLiteral("Email"), T::Text),
                    plain(QStringLiteral("Tel"), T::Text), plain(QStringLiteral("Contact"), T::Text)},
                   QStringLiteral("ClientID")});

    // Sites.ClientID refers to Clients without a constraint: deleting a client
    // leaves its sites in place.
    FieldDef siteClient = plain(QStringLiteral("ClientID"), T::Long);
    siteClient.indexed = true;
    tables.append({QStringLiteral("Sites"),
                   {plain(QStringLiteral("SiteID"), T::Counter), siteClient,
                    plain(QStringLiteral("Site"), T::Text), plain(QStringLiteral("Address"), T::Text),
                    plain(QStringLiteral("Area"), T::Text), plain(QStringLiteral("Town"), T::Text),
                    plain(QStringLiteral("County"), T::Text), plain(QStringLiteral("PostCode"), T::Text),
                    plain(QStringLiteral("TelNumber"), T::Text), plain(QStringLiteral("FAXNumber"), T::Text),
                    plain(QStringLiteral("Email"), T::Text), plain(QStringLiteral("Contact"), T::Text),
                    addedNow(QStringLiteral("DateAdded")), plain(QStringLiteral("Comments"), T::Memo)},
                   QStringLiteral("SiteID")});

    FieldDef colour = plain(QStringLiteral("ColourOutputCreated"), T::Boolean);
    colour.defaultFalse = true;
    tables.append(
        {QStringLiteral("SitePlans"),
         {plain(QStringLiteral("PlanID"), T::Counter), siteLink(),
          plain(QStringLiteral("PlanDescription"), T::Text), addedNow(QStringLiteral("DateCreated")), colour},
         QStringLiteral("PlanID")});

    tables.append(
        {QStringLiteral("ProjectCosts"),
         {siteLink(), plain(QStringLiteral("ProjectItem"), T::Text),
          plain(QStringLiteral("ProjectTimeLine"), T::Text), plain(QStringLiteral("Cost"), T::Currency),
          plain(QStringLiteral("ActualCost"), T::Currency)},
         QString()});

    tables.append(
        {QStringLiteral("ProjectItems"), {plain(QStringLiteral("ProjectItems"), T::Text)}, QString()});

    tables.append({QStringLiteral("ProjectTimeLines"),
                   {siteLink(), plain(QStringLiteral("TimeLineDesc"), T::Text)},
                   QString()});

    tables.append(
        {QStringLiteral("Schedule"),
         {plain(QStringLiteral("ScheduleID"), T::Counter), siteLink(),
          plain(QStringLiteral("ProjectItem"), T::Short), plain(QStringLiteral("StartDate"), T::Date),
          plain(QStringLiteral("StartTime"), T::Long), plain(QStringLiteral("EndDate"), T::Date),
          plain(QStringLiteral("EndTime"), T::Long), plain(QStringLiteral("BarStyle"), T::Short),
          plain(QStringLiteral("BarText"), T::Text), plain(QStringLiteral("BarTextAlign"), T::Short),
          plain(QStringLiteral("BarColour"), T::Long), plain(QStringLiteral("Comments"), T::Memo),
          plain(QStringLiteral("ImageIndex"), T::Short)},
         QStringLiteral("ScheduleID")});

    tables.append({QStringLiteral("TemplateFiles"),
                   {plain(QStringLiteral("ID"), T::Counter), plain(QStringLiteral("TemplateName"), T::Text)},
                   QStringLiteral("ID")});
    return tables;
}

const QHash<QString, QString>& canonicalNames() {
    static const QHash<QString, QString> names = [] {
        QHash<QString, QString> n;
        for (const TableDef& t : projectTables()) {
            n.insert(t.name.toLower(), t.name);
            for (const FieldDef& f : t.fields)
                n.insert(f.name.toLower(), f.name);
        }
        return n;
    }();
    return names;
}

} // namespace

const QList<TableDef>& projectTables() {
    static const QList<TableDef> tables = buildTables();
    return tables;
}

const TableDef* findTable(const QString& name) {
    for (const TableDef& t : projectTables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return &t;
    return nullptr;
}

bool isSchemaName(const QString& name) {
    return canonicalNames().contains(name.toLower());
}

QString canonicalName(const QString& name) {
    return canonicalNames().value(name.toLower(), name);
}

QStringList defaultProjectItems() {
    return {
        QStringLiteral("Site Clearance"),
        QStringLiteral("Excavation"),
        QStringLiteral("Foundations"),
        QStringLiteral("Drainage"),
        QStringLiteral("Damp Proof Course"),
        QStringLiteral("Brickwork"),
        QStringLiteral("Blockwork"),
        QStringLiteral("Scaffolding"),
        QStringLiteral("Steelwork"),
        QStringLiteral("Floor Joists"),
        QStringLiteral("Roof Structure"),
        QStringLiteral("Roofing"),
        QStringLiteral("Guttering And Downpipes"),
        QStringLiteral("Windows And External Doors"),
        QStringLiteral("First Fix Carpentry"),
        QStringLiteral("First Fix Electrics"),
        QStringLiteral("First Fix Plumbing"),
        QStringLiteral("Insulation"),
        QStringLiteral("Plastering"),
        QStringLiteral("Screeding"),
        QStringLiteral("Second Fix Carpentry"),
        QStringLiteral("Second Fix Electrics"),
        QStringLiteral("Second Fix Plumbing"),
        QStringLiteral("Heating"),
        QStringLiteral("Kitchen Fitting"),
        QStringLiteral("Bathroom Fitting"),
        QStringLiteral("Tiling"),
        QStringLiteral("Decorating"),
        QStringLiteral("Flooring"),
        QStringLiteral("Landscaping"),
        QStringLiteral("Building Control Fees"),
        QStringLiteral("Skip Hire"),
    };
}

} // namespace tessaly::db
