// Combo boxes, list boxes and the drive and folder lists.
#include "ControlWidget.h"
#include "core/files/FileSystem.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QSignalBlocker>

namespace tessaly::ui {

namespace {
// The combo box style whose text the user can type; the others only list.
constexpr int DropdownCombo = 0;
// The entry of a folder list that leads to the parent folder.
const QString ParentEntry = QStringLiteral("..");

bool wants(const QString& property, const char* name) {
    return property.isEmpty() || property == QLatin1String(name);
}

QStringList itemsOf(const Control& control) {
    QStringList items;
    for (const QString& item : control.items())
        items << item;
    return items;
}

// Brings a list widget's items up to the model's. AddItem, the common case,
// grows the list by one at its end, which needs no rebuild.
template <class ListWidget> void syncItems(ListWidget* widget, const Control& control) {
    if (control.listCount() == widget->count() + 1) {
        widget->addItem(control.items().back());
        return;
    }
    widget->clear();
    widget->addItems(itemsOf(control));
}

// The list style with a tick box at each item.
constexpr int CheckBoxList = 1;

bool tickBoxes(const Control& control) {
    return control.kind() == ControlKind::ListBox &&
           control.prop(QStringLiteral("Style")).toInt() == CheckBoxList;
}

void showTicks(QListWidget* list, const Control& control) {
    for (int i = 0; i < list->count() && i < control.listCount(); ++i) {
        QListWidgetItem* item = list->item(i);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(control.selected(i) ? Qt::Checked : Qt::Unchecked);
    }
}

bool editableCombo(const Control& control) {
    return control.hasProp(QStringLiteral("Style")) &&
           control.prop(QStringLiteral("Style")).toInt() == DropdownCombo;
}

void showComboText(QComboBox* combo, const Control& control) {
    const int index = control.listIndex();
    if (combo->isEditable()) {
        combo->setCurrentIndex(index);
        combo->setEditText(control.text());
        return;
    }
    // A text that is no item shows in the box as a list-only combo's placeholder.
    combo->setCurrentIndex(index);
    combo->setPlaceholderText(index < 0 ? control.text() : QString());
}

QStringList subfolders(const QString& hostPath) {
    return QDir(hostPath).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
}
} // namespace

ControlWidget makeComboBox(Control& control, QWidget* parent, ViewSink& sink) {
    auto* combo = new QComboBox(parent);
    combo->setEditable(editableCombo(control));
    QObject::connect(combo, &QComboBox::activated, combo,
                     [&control, &sink](int i) { sink.userInput([&] { control.setListIndex(i); }); });
    if (QLineEdit* edit = combo->lineEdit())
        QObject::connect(edit, &QLineEdit::textEdited, combo, [&control, &sink](const QString& text) {
            sink.userInput([&] { control.setText(text); });
        });
    // Every line pops up at the same height, so that a long list opens quickly.
    if (auto* lines = qobject_cast<QListView*>(combo->view()))
        lines->setUniformItemSizes(true);
    ControlWidget made{combo, nullptr, {}, true};
    made.sync = [combo, &control](const QString& p) {
        const QSignalBlocker quiet(combo);
        if (wants(p, "List"))
            syncItems(combo, control);
        if (wants(p, "List") || wants(p, "ListIndex") || wants(p, "Text"))
            showComboText(combo, control);
    };
    return made;
}

ControlWidget makeListBox(Control& control, QWidget* parent, ViewSink& sink) {
    auto* list = new QListWidget(parent);
    // A list with a tick box at each item: a tick sets the item's Selected.
    QObject::connect(list, &QListWidget::itemChanged, list, [list, &control, &sink](QListWidgetItem* item) {
        const int row = list->row(item);
        const bool on = item->checkState() == Qt::Checked;
        if (row >= 0 && row < control.listCount() && control.selected(row) != on)
            sink.userInput([&] { control.setSelected(row, on); });
    });
    QObject::connect(list, &QListWidget::currentRowChanged, list, [&control, &sink](int row) {
        if (row >= 0)
            sink.userInput([&] { control.setListIndex(row); });
    });
    QObject::connect(list, &QListWidget::itemDoubleClicked, list, [&control, &sink] {
        sink.userInput([&] { control.form().raiseEvent(control, QStringLiteral("DblClick")); });
    });
    ControlWidget made{list, nullptr, {}, true};
    made.sync = [list, &control](const QString& p) {
        const QSignalBlocker quiet(list);
        if (wants(p, "List"))
            syncItems(list, control);
        if (wants(p, "List") || wants(p, "ListIndex"))
            list->setCurrentRow(control.listIndex());
        if (tickBoxes(control) && (wants(p, "List") || wants(p, "Selected")))
            showTicks(list, control);
    };
    return made;
}

ControlWidget makeDriveList(Control& control, QWidget* parent, ViewSink& sink) {
    auto* combo = new QComboBox(parent);
    for (const QFileInfo& drive : QDir::drives())
        combo->addItem(drive.absolutePath());
    QObject::connect(combo, &QComboBox::activated, combo, [combo, &control, &sink](int i) {
        const QString drive = combo->itemText(i);
        sink.userInput([&] { control.set(QStringLiteral("Drive"), drive); });
    });
    ControlWidget made{combo, nullptr, {}, true};
    made.sync = [combo, &control](const QString& p) {
        if (!wants(p, "Drive"))
            return;
        const QSignalBlocker quiet(combo);
        const QString drive = control.prop(QStringLiteral("Drive")).toString();
        if (combo->findText(drive) < 0)
            combo->addItem(drive);
        combo->setCurrentIndex(combo->findText(drive));
    };
    return made;
}

ControlWidget makeDirList(Control& control, QWidget* parent, ViewSink& sink) {
    auto* list = new QListWidget(parent);
    // A double click opens the folder: the list's Path changes and it fires Change.
    QObject::connect(list, &QListWidget::itemDoubleClicked, list, [&control, &sink](QListWidgetItem* item) {
        const QString entry = item->text();
        sink.userInput([&] {
            const QString here = fs::toHost(control.prop(QStringLiteral("Path")).toString());
            control.set(QStringLiteral("Path"), QDir::cleanPath(QDir(here).absoluteFilePath(entry)));
        });
    });
    QObject::connect(list, &QListWidget::itemClicked, list, [&control, &sink] {
        sink.userInput([&] { control.form().raiseEvent(control, QStringLiteral("Click")); });
    });
    ControlWidget made{list, nullptr, {}, true};
    made.sync = [list, &control](const QString& p) {
        if (!wants(p, "Path"))
            return;
        const QSignalBlocker quiet(list);
        list->clear();
        const QString here = fs::toHost(control.prop(QStringLiteral("Path")).toString());
        if (here.isEmpty())
            return;
        if (!QDir(here).isRoot())
            list->addItem(ParentEntry);
        list->addItems(subfolders(here));
    };
    return made;
}

} // namespace tessaly::ui
