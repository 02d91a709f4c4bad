// The e-mail and colouring windows as the desktop shows them: the grid bound
// to the data control, the tick boxes of the plan list, the two tab panels,
// the spelling dialog, and the picture painted with the mouse. With
// TESSALY_OUTPUT_SCREENSHOTS naming a folder, each window is saved there as
// shown (scripts/screenshot-output.sh runs these tests under Xvfb).
#include "UiTestSupport.h"
#include "canvas/api/CanvasCodes.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "core/forms/DataBinding.h"
#include "core/install/Installer.h"
#include "output/colour/PaintSurface.h"
#include "output/frmColourFill.h"
#include "output/frmEmail.h"
#include "output/mail/Mail.h"
#include "program/Program.h"
#include "ui/DataGridWidget.h"
#include "ui/FormView.h"
#include "ui/dialogs/SpellDialog.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/frmMain.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabBar>
#include <QTableView>
#include <QTest>

namespace tessaly::ui {
namespace {

using colour::PaintSurface;

// Saves a window when the screenshot folder is set.
void shoot(QWidget& window, const QString& name) {
    testing::saveShot(window, "TESSALY_OUTPUT_SCREENSHOTS", name + QStringLiteral(".png"));
}

class OutputWindowsView : public ::testing::Test {
protected:
    testing::TempHome home;
    bool installed = (install(home.home()), installMail(home.home()), true);
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app = program::makeApplication(port, waiter, home.home());
    frmMain* main = nullptr;

    void SetUp() override {
        app->gDatabaseLocation = home.home().databasePath();
        app->gConnectionString =
            QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + app->gDatabaseLocation;
        app->OpenConnection();
        app->gFileStore = home.home().fileStoreDir();
        app->gTempFileStore = home.home().tempFileStoreDir();
        main = &app->form<frmMain>();
        addRows();
    }

    void sql(const QString& statement) {
        db::Recordset rs;
        rs.Open(statement, *app->gConnection, db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    }
    void addRows() {
        sql(QStringLiteral(
            "INSERT INTO Clients (Client, Contact, Email) VALUES ('Hartley Homes', 'Ann Hartley', "
            "'ann@hartley.test')"));
        sql(QStringLiteral(
            "INSERT INTO Clients (Client, Contact, Email) VALUES ('Kiln Estates', 'Raj Patel', "
            "'raj@kiln.test')"));
        sql(QStringLiteral("INSERT INTO Sites (ClientID, Site, Address) VALUES (1, 'Mill', '12 Mill Lane')"));
        sql(QStringLiteral(
            "INSERT INTO Sites (ClientID, Site, Address) VALUES (1, 'Barn', 'Old Barn, Church Road')"));
        sql(QStringLiteral("INSERT INTO Sites (ClientID, Site, Address) VALUES (2, 'Kiln', '3 Kiln Road')"));
        for (const char* plan : {"Ground Floor", "First Floor", "Roof Plan", "Site Layout"})
            sql(QStringLiteral(
                    "INSERT INTO SitePlans (SiteID, PlanDescription, ColourOutputCreated) VALUES (1, '%1', "
                    "%2)")
                    .arg(QString::fromLatin1(plan))
                    .arg(QByteArray(plan) == "Ground Floor" ? -1 : 0));
    }
    // A plan drawn and saved as the project save writes its metafile.
    void savePlan(const QString& address, const QString& description) {
        const QString folder = fs::toHost(app->gFileStore) + QLatin1Char('/') + address;
        QDir().mkpath(folder);
        const auto shape = [&](int type, int l, int t, int r, int b) {
            QVariantList args{type, l, t, r, b};
            app->gShapeList->call(QStringLiteral("AddShape"), args);
        };
        shape(canvas::shape_type::Rectangle, 20, 20, 140, 110);
        shape(canvas::shape_type::Rectangle, 140, 20, 250, 110);
        shape(canvas::shape_type::Rectangle, 20, 110, 250, 190);
        shape(canvas::shape_type::Ellipse, 170, 50, 220, 90);
        late::call(
            main->canvas1(), "SaveFile",
            {folder + QLatin1Char('/') + description + QStringLiteral(".emf"), canvas::save_format::Emf});
    }
};

TEST_F(OutputWindowsView, TheEmailWindowShowsItsGridTicksAndTabs) {
    Form& form = app->form(QString::fromLatin1(frmEmail::FormName));
    auto& email = static_cast<frmEmail&>(form);
    FormView view(form);
    view.resize(view.initialSize());
    view.show();
    app->show(form, true);
    testing::processPending();

    auto* gridView = dynamic_cast<ui::DataGridView*>(view.widgetFor(email.G1));
    ASSERT_NE(gridView, nullptr);
    QTableView* grid = gridView->table();
    ASSERT_EQ(grid->model()->rowCount(), 3);
    ASSERT_EQ(grid->model()->columnCount(), 6);
    EXPECT_EQ(grid->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Client"));
    EXPECT_EQ(grid->model()->data(grid->model()->index(1, 3)).toString(),
              QStringLiteral("Old Barn, Church Road"));
    // The activation sized the columns to their content.
    EXPECT_GE(grid->columnWidth(3),
              grid->fontMetrics().horizontalAdvance(QStringLiteral("Old Barn, Church Road")));

    // The data control's first moves came before the window was loaded, so
    // the list fills at the first move to another row: the second, then
    // back to the first.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier,
                      grid->visualRect(grid->model()->index(1, 0)).center());
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier,
                      grid->visualRect(grid->model()->index(0, 0)).center());
    auto* list = view.findChild<QListWidget*>(QStringLiteral("List1"));
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->count(), 5);
    EXPECT_EQ(list->item(1)->text(), QStringLiteral("Ground Floor Coloured"));
    EXPECT_TRUE(list->item(0)->flags() & Qt::ItemIsUserCheckable);
    EXPECT_EQ(email.txtSubject.text(), QStringLiteral("Site Plans For: 12 Mill Lane, FAO: Ann Hartley"));
    // A tick in the view is the item's Selected, and the other way round.
    list->item(0)->setCheckState(Qt::Checked);
    EXPECT_TRUE(email.List1.selected(0));
    email.List1.setSelected(2, true);
    EXPECT_EQ(list->item(2)->checkState(), Qt::Checked);
    testing::processPending();
    shoot(view, QStringLiteral("email-attachment-options"));

    // The second tab panel shows the mail's fields.
    auto* tabs = view.findChild<QTabBar*>(QStringLiteral("tabs"));
    ASSERT_NE(tabs, nullptr);
    tabs->setCurrentIndex(1);
    testing::processPending();
    auto* subject = view.findChild<QLineEdit*>(QStringLiteral("txtSubject"));
    ASSERT_NE(subject, nullptr);
    EXPECT_TRUE(subject->isVisible());
    EXPECT_FALSE(grid->isVisible());
    EXPECT_EQ(subject->text(), QStringLiteral("Site Plans For: 12 Mill Lane, FAO: Ann Hartley"));
    email.txtToSend.setText(QStringLiteral(
        "Dear Ann,\n\nPlese find attached the ground floor and first floor plans of 12 Mill Lane, with the "
        "kitchen extension coloured in.\n\nKind regards,\nThe drawing office"));
    testing::processPending();
    shoot(view, QStringLiteral("email-details"));
}

TEST_F(OutputWindowsView, TheSpellingDialogOffersTheSuggestions) {
    const QString text = QStringLiteral("Dear Ann, plese find the plans attached.");
    SpellQuery query{QStringLiteral("plese"),
                     {QStringLiteral("please"), QStringLiteral("pelse"), QStringLiteral("peles")},
                     text,
                     10};
    SpellDialog dialog(query);
    dialog.show();
    testing::processPending();
    auto* replacement = dialog.findChild<QLineEdit*>(QStringLiteral("replacement"));
    ASSERT_NE(replacement, nullptr);
    EXPECT_EQ(replacement->text(), QStringLiteral("please"));
    auto* suggestions = dialog.findChild<QListWidget*>(QStringLiteral("suggestions"));
    ASSERT_NE(suggestions, nullptr);
    EXPECT_EQ(suggestions->count(), 3);
    shoot(dialog, QStringLiteral("email-spelling-dialog"));
    suggestions->setCurrentRow(2);
    EXPECT_EQ(replacement->text(), QStringLiteral("peles"));
    dialog.findChild<QPushButton*>(QStringLiteral("ignore"))->click();
    EXPECT_EQ(dialog.choice().action, SpellChoice::Action::Ignore);

    SpellDialog again(query);
    again.findChild<QPushButton*>(QStringLiteral("replace"))->click();
    EXPECT_EQ(again.choice().action, SpellChoice::Action::Replace);
    EXPECT_EQ(again.choice().replacement, QStringLiteral("please"));
    SpellDialog third(query);
    third.findChild<QPushButton*>(QStringLiteral("cancel"))->click();
    EXPECT_EQ(third.choice().action, SpellChoice::Action::Cancel);
}

// Two floods and a pen line made with the mouse on the picture.
TEST_F(OutputWindowsView, TheColouringWindowPaintsWhereTheMouseGoes) {
    savePlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"));
    app->gPlanFileName = QStringLiteral("12 Mill Lane\\Ground Floor");
    Form& form = app->form(QString::fromLatin1(frmColourFill::FormName));
    auto& colour = static_cast<frmColourFill&>(form);
    FormView view(form);
    view.resize(view.initialSize());
    view.show();
    app->show(form, true);
    testing::processPending();
    QWidget* picture = view.findChild<QWidget*>(QStringLiteral("Picture1"));
    ASSERT_NE(picture, nullptr);
    PaintSurface& surface = *PaintSurface::of(colour.Picture1);
    const auto mm = [](double v) { return static_cast<int>(v / 25.4 * 96); };

    // A flood in the first room, in pale blue.
    port.queueColour(0xF0C080);
    colour.raiseEvent(colour.cmdChoseColour, QStringLiteral("Click"));
    const QPoint room1(mm(60), mm(60));
    QTest::mouseClick(picture, Qt::LeftButton, Qt::NoModifier, room1);
    EXPECT_EQ(surface.pixel(room1.x(), room1.y()), 0xF0C080);
    // A flood in the third room, in pale green.
    port.queueColour(0x90E0A0);
    colour.raiseEvent(colour.cmdChoseColour, QStringLiteral("Click"));
    const QPoint room3(mm(60), mm(150));
    QTest::mouseClick(picture, Qt::LeftButton, Qt::NoModifier, room3);
    EXPECT_EQ(surface.pixel(room3.x(), room3.y()), 0x90E0A0);
    EXPECT_EQ(surface.pixel(room1.x(), room1.y()), 0xF0C080);

    // A pen line in red across the second room.
    port.queueColour(0x0000FF);
    colour.raiseEvent(colour.cmdChoseColour, QStringLiteral("Click"));
    colour.Option2.setValue(1);
    const QPoint from(mm(150), mm(40)), to(mm(240), mm(100));
    QTest::mousePress(picture, Qt::LeftButton, Qt::NoModifier, from);
    for (int step = 1; step <= 10; ++step) {
        const QPointF at = from + (to - from) * (step / 10.0);
        QMouseEvent move(QEvent::MouseMove, at, picture->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(picture, &move);
    }
    QTest::mouseRelease(picture, Qt::LeftButton, Qt::NoModifier, to);
    EXPECT_EQ(surface.pixel(from.x(), from.y()), 0x0000FF);
    const QPoint middle = from + (to - from) / 2;
    bool red = false;
    for (int dy = -1; dy <= 1; ++dy)
        red = red || surface.pixel(middle.x(), middle.y() + dy) == 0x0000FF;
    EXPECT_TRUE(red);
    testing::processPending();
    shoot(view, QStringLiteral("colour-fill"));
}

} // namespace
} // namespace tessaly::ui
