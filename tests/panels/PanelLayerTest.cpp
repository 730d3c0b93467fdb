// The panel layer on a test panel that holds one gadget of every kind.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTimer>
#include <map>

#include "PanelTestSupport.h"
#include "TestSupport.h"
#include "panels/layer/EventQueue.h"
#include "panels/layer/HelpSystem.h"
#include "panels/layer/Panel.h"

using namespace tarvex;
using namespace tarvex::test;

namespace {

const char* kPanelFile = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>PTest</class>
 <widget class="QMainWindow" name="PTest">
  <widget class="QWidget" name="FCentral">
   <layout class="QVBoxLayout" name="lay">
    <item><widget class="QPushButton" name="BGo"><property name="text"><string>Go</string></property>
      <property name="callback" stdset="0"><string>go</string></property></widget></item>
    <item><widget class="QPushButton" name="BNone"><property name="callback" stdset="0"><string>notImplemented</string></property></widget></item>
    <item><widget class="QPushButton" name="BPlain"/></item>
    <item><widget class="QLineEdit" name="TName"><property name="callback" stdset="0"><string>nameEntered</string></property></widget></item>
    <item><widget class="QLineEdit" name="NCount"/></item>
    <item><widget class="QLineEdit" name="EValue"><property name="numberField" stdset="0"><bool>true</bool></property></widget></item>
    <item><widget class="QPlainTextEdit" name="TeNotes"/></item>
    <item><widget class="QLabel" name="MlStatus"/></item>
    <item><widget class="QLabel" name="IcPicture"/></item>
    <item><widget class="QCheckBox" name="TFlag"><property name="callback" stdset="0"><string>flag</string></property></widget></item>
    <item><widget class="QGroupBox" name="SeChoice"><property name="callback" stdset="0"><string>choice</string></property>
      <layout class="QVBoxLayout" name="laySel">
       <item><widget class="QRadioButton" name="R0"/></item>
       <item><widget class="QRadioButton" name="R1"/></item>
       <item><widget class="QRadioButton" name="R2"/></item>
      </layout></widget></item>
    <item><widget class="QComboBox" name="OMethod"><property name="callback" stdset="0"><string>method</string></property>
      <item><property name="text"><string>a</string></property></item>
      <item><property name="text"><string>b</string></property></item>
      <item><property name="text"><string>c</string></property></item></widget></item>
    <item><widget class="QComboBox" name="CbName"><property name="editable"><bool>true</bool></property></widget></item>
    <item><widget class="QListWidget" name="SlItems"><property name="callback" stdset="0"><string>selectItem</string></property>
      <property name="doubleClickCallback" stdset="0"><string>doubleClick</string></property>
      <property name="selectionMode"><enum>QAbstractItemView::ExtendedSelection</enum></property></widget></item>
    <item><widget class="QTableWidget" name="MaValues"><property name="callback" stdset="0"><string>cell</string></property>
      <property name="doubleClickCallback" stdset="0"><string>cellDouble</string></property></widget></item>
    <item><widget class="QTabWidget" name="NbPages"><property name="callback" stdset="0"><string>page</string></property>
      <widget class="QWidget" name="FPage1"><property name="panelFile" stdset="0"><string>PTestPage.ui</string></property></widget>
      <widget class="QWidget" name="FPage2"/></widget></item>
    <item><widget class="QProgressBar" name="RgProgress"/></item>
    <item><widget class="QFrame" name="FBox"/></item>
   </layout>
  </widget>
  <widget class="QMenuBar" name="MnBar">
   <widget class="QMenu" name="menu0"><property name="title"><string>File</string></property>
    <addaction name="a0"/><addaction name="a1"/><addaction name="separator"/><addaction name="a3"/></widget>
   <widget class="QMenu" name="menu1"><property name="title"><string>Edit</string></property>
    <addaction name="b0"/></widget>
   <addaction name="menu0"/><addaction name="menu1"/>
  </widget>
  <action name="a0"><property name="text"><string>zero</string></property><property name="callback" stdset="0"><string>menuZero</string></property></action>
  <action name="a1"><property name="text"><string>one</string></property></action>
  <action name="a3"><property name="text"><string>three</string></property><property name="callback" stdset="0"><string>menuThree</string></property></action>
  <action name="b0"><property name="text"><string>edit</string></property></action>
 </widget>
</ui>
)";

const char* kPageFile = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>PTestPage</class>
 <widget class="QWidget" name="PTestPage">
  <layout class="QVBoxLayout" name="lay">
   <item><widget class="QPushButton" name="BPage"><property name="callback" stdset="0"><string>pageButton</string></property></widget></item>
  </layout>
 </widget>
</ui>
)";

class PanelLayerTest : public ::testing::Test, public PanelTestBase {
protected:
    void SetUp() override {
        writeFile(dir.file("PTest.ui"), kPanelFile);
        writeFile(dir.file("PTestPage.ui"), kPageFile);
        SearchPath::clear();
        SearchPath::append(dir.path().string());
        useStagePictures();
        panel = std::make_unique<Panel>("PTest", "A test panel", "PTest.ui", 10, 20, 400, 600);
        for (const char* cb : {"go", "nameEntered", "flag", "choice", "method", "selectItem", "doubleClick", "cell",
                               "cellDouble", "page", "pageButton", "menuZero", "menuThree"})
            panel->registerCallback(cb, [this, cb] { ++fired[cb]; });
    }
    // Pictures come from the staged tree, found after the test's own directory.
    void useStagePictures() {
        SearchPath::append(stageDir() + "/Tarvex/TarvexPanels");
        SearchPath::append(stageDir() + "/ILOG");
    }

    ScratchDir dir;
    std::unique_ptr<Panel> panel;
    std::map<std::string, int> fired;
};

TEST_F(PanelLayerTest, GadgetsAreFoundByNameWithTheirKinds) {
    ASSERT_EQ(panel->isLoaded(), 1) << panel->errorText();
    const std::map<std::string, GadgetKind> kinds = {
        {"BGo", GadgetKind::Button},          {"TName", GadgetKind::TextField},   {"NCount", GadgetKind::NumberField},
        {"EValue", GadgetKind::NumberField},  {"TeNotes", GadgetKind::Text},      {"MlStatus", GadgetKind::MessageLabel},
        {"IcPicture", GadgetKind::Icon},      {"TFlag", GadgetKind::Toggle},      {"SeChoice", GadgetKind::Selector},
        {"OMethod", GadgetKind::OptionMenu},  {"CbName", GadgetKind::ComboBox},   {"SlItems", GadgetKind::StringList},
        {"MaValues", GadgetKind::Matrix},     {"NbPages", GadgetKind::Notebook},  {"RgProgress", GadgetKind::Gauge},
        {"MnBar", GadgetKind::MenuBar},       {"FBox", GadgetKind::Frame},        {"BPage", GadgetKind::Button},
        {"NoSuchGadget", GadgetKind::None}};
    for (const auto& [name, kind] : kinds)
        EXPECT_EQ(panel->kindOf(name), kind) << name << " is a " << gadgetKindName(panel->kindOf(name));
    EXPECT_EQ(panel->getObject("NoSuchGadget"), nullptr);
    EXPECT_EQ(panel->title(), "A test panel");
    EXPECT_EQ(panel->window()->pos(), QPoint(10, 20));
}

TEST_F(PanelLayerTest, CallbacksFireThroughEachWidgetsNaturalSignal) {
    qobject_cast<QPushButton*>(panel->getObject("BGo"))->click();
    emit qobject_cast<QLineEdit*>(panel->getObject("TName"))->returnPressed();
    qobject_cast<QCheckBox*>(panel->getObject("TFlag"))->click();
    qobject_cast<QRadioButton*>(panel->getObject("R1"))->click();
    qobject_cast<QComboBox*>(panel->getObject("OMethod"))->setCurrentIndex(2);
    panel->addItem("SlItems", "x");
    qobject_cast<QListWidget*>(panel->getObject("SlItems"))->item(0)->setSelected(true);
    emit qobject_cast<QListWidget*>(panel->getObject("SlItems"))->itemDoubleClicked(nullptr);
    emit qobject_cast<QTableWidget*>(panel->getObject("MaValues"))->cellClicked(0, 0);
    emit qobject_cast<QTableWidget*>(panel->getObject("MaValues"))->cellDoubleClicked(0, 0);
    qobject_cast<QPushButton*>(panel->getObject("BPage"))->click();  // a gadget of the page's own file
    panel->menuItem("MnBar", 0, 0)->trigger();
    panel->menuItem("MnBar", 0, 3)->trigger();
    panel->setCurrentPage("NbPages", 1);  // the program's change: no callback
    for (const char* cb : {"go", "nameEntered", "flag", "choice", "method", "selectItem", "doubleClick", "cell",
                           "cellDouble", "pageButton", "menuZero", "menuThree"})
        EXPECT_EQ(fired[cb], 1) << cb;
    EXPECT_EQ(fired["page"], 0);

    // Every callback name of the files is wired, each once.
    std::vector<std::string> wired = panel->wiredCallbacks();
    std::sort(wired.begin(), wired.end());
    EXPECT_EQ(wired, (std::vector<std::string>{"cell", "cellDouble", "choice", "doubleClick", "flag", "go", "menuThree",
                                               "menuZero", "method", "nameEntered", "notImplemented", "page",
                                               "pageButton", "selectItem"}));
}

TEST_F(PanelLayerTest, AnUnimplementedCallbackPrintsItsTraceLine) {
    testing::internal::CaptureStderr();
    qobject_cast<QPushButton*>(panel->getObject("BNone"))->click();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), " PTest : notImplemented method ...\n");
    // A registered callback prints nothing.
    testing::internal::CaptureStderr();
    panel->invokeCallback("go");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(PanelLayerTest, OperationsChangeGadgetsWithoutFiringCallbacks) {
    EXPECT_EQ(panel->selectorIndex("SeChoice"), -1);
    EXPECT_EQ(panel->setSelectorIndex("SeChoice", 2), 1);
    EXPECT_EQ(panel->selectorIndex("SeChoice"), 2);
    EXPECT_EQ(panel->setSelectorIndex("SeChoice", 0), 1);
    EXPECT_EQ(panel->selectorIndex("SeChoice"), 0);
    EXPECT_EQ(panel->setSelectorIndex("SeChoice", 3), 0);
    EXPECT_EQ(panel->setSelectorIndex("SeChoice", -1), 1);
    EXPECT_EQ(panel->selectorIndex("SeChoice"), -1);

    EXPECT_EQ(panel->getToggle("TFlag"), 0);
    EXPECT_EQ(panel->setToggle("TFlag", true), 1);
    EXPECT_EQ(panel->getToggle("TFlag"), 1);
    EXPECT_EQ(panel->getToggle("BGo"), -1);

    EXPECT_EQ(panel->selectedIndex("OMethod"), 0);
    EXPECT_EQ(panel->setSelected("OMethod", 2), 1);
    EXPECT_EQ(panel->selectedIndex("OMethod"), 2);
    EXPECT_EQ(panel->setSelected("OMethod", 3), 0);

    panel->setItems("SlItems", {"a", "b", "c", "d"});
    EXPECT_EQ(panel->setSelected("SlItems", 1), 1);
    EXPECT_EQ(panel->setSelected("SlItems", 3), 1);
    EXPECT_EQ(panel->selectedIndices("SlItems"), (std::vector<int>{1, 3}));
    EXPECT_EQ(panel->setSelected("SlItems", 1, false), 1);
    EXPECT_EQ(panel->selectedIndex("SlItems"), 3);

    panel->setMatrixSize("MaValues", 2, 2);
    panel->setCell("MaValues", 0, 0, "x");
    panel->setText("TName", "typed by the program");
    for (const auto& [cb, n] : fired) EXPECT_EQ(n, 0) << cb;
}

TEST_F(PanelLayerTest, NumberFieldsParseWholeNumbersAndReportFailures) {
    long i = 5;
    double d = 5;
    struct Case {
        const char* text;
        bool intOk;
        long intValue;
        bool floatOk;
        double floatValue;
    };
    const Case cases[] = {
        {"42", true, 42, true, 42.0},        {" -7 ", true, -7, true, -7.0},     {"+3", true, 3, true, 3.0},
        {"1e3", false, 0, true, 1000.0},     {"0.25", false, 0, true, 0.25},    {"4x", false, 0, false, 0},
        {"", false, 0, false, 0},            {"   ", false, 0, false, 0},        {"nan", false, 0, false, 0},
        {"inf", false, 0, false, 0},         {"1,5", false, 0, false, 0},       {"99999999999999999999", false, 0, true, 1e20},
        {"1e999", false, 0, false, 0},
    };
    for (const Case& c : cases) {
        panel->setLabel("NCount", c.text);
        i = -123;
        d = -123;
        EXPECT_EQ(panel->getInt("NCount", i), c.intOk ? 1 : 0) << c.text;
        EXPECT_EQ(panel->getFloat("NCount", d), c.floatOk ? 1 : 0) << c.text;
        EXPECT_EQ(i, c.intOk ? c.intValue : -123) << c.text;
        EXPECT_DOUBLE_EQ(d, c.floatOk ? c.floatValue : -123) << c.text;
    }
    EXPECT_EQ(panel->setFloat("EValue", 0.1 + 0.2), 1);
    EXPECT_EQ(panel->getLabel("EValue"), "0.3");
    EXPECT_EQ(panel->setInt("EValue", -2147483648L), 1);
    EXPECT_EQ(panel->getInt("EValue", i), 1);
    EXPECT_EQ(i, -2147483648L);
    EXPECT_EQ(panel->getInt("MlStatus", i), 0);  // not a field
}

TEST_F(PanelLayerTest, LabelsTextsListsAndMatrices) {
    panel->setLabel("MlStatus", "Ready");
    panel->setLabel("BGo", "Go on");
    EXPECT_EQ(panel->getLabel("MlStatus"), "Ready");
    EXPECT_EQ(panel->getLabel("BGo"), "Go on");
    EXPECT_EQ(panel->setLabel("NoSuchGadget", "x"), 0);

    panel->setText("TeNotes", "first");
    panel->appendText("TeNotes", "second");
    panel->appendText("TeNotes", "");
    EXPECT_EQ(panel->getText("TeNotes"), "first\nsecond\n");
    EXPECT_EQ(panel->appendText("MlStatus", "x"), 0);

    EXPECT_EQ(panel->itemCount("CbName"), 0);
    panel->addItem("CbName", "one");
    panel->addItem("CbName", "three");
    EXPECT_EQ(panel->insertItem("CbName", 1, "two"), 1);
    EXPECT_EQ(panel->insertItem("CbName", 5, "five"), 0);
    EXPECT_EQ(panel->itemText("CbName", 1), "two");
    EXPECT_EQ(panel->removeItem("CbName", 0), 1);
    EXPECT_EQ(panel->removeItem("CbName", 2), 0);
    EXPECT_EQ(panel->itemCount("CbName"), 2);
    EXPECT_EQ(panel->itemText("CbName", 7), "");
    EXPECT_EQ(panel->setItemText("SlItems", 0, "x"), 0);  // the list is empty

    ASSERT_EQ(panel->setMatrixSize("MaValues", 3, 2), 1);
    EXPECT_EQ(panel->rowCount("MaValues"), 3);
    EXPECT_EQ(panel->columnCount("MaValues"), 2);
    EXPECT_EQ(panel->setCell("MaValues", 0, 0, "name", MatrixItemKind::Label), 1);
    EXPECT_EQ(panel->setCell("MaValues", 0, 1, "head", MatrixItemKind::FilledLabel), 1);
    EXPECT_EQ(panel->setCellDouble("MaValues", 1, 0, 1.0 / 3.0), 1);
    EXPECT_EQ(panel->setCellInt("MaValues", 1, 1, -12), 1);
    EXPECT_EQ(panel->setCell("MaValues", 3, 0, "out"), 0);
    EXPECT_EQ(panel->setCell("MaValues", 0, -1, "out"), 0);
    EXPECT_EQ(panel->cellText("MaValues", 1, 0), "0.333333");
    double v = 0;
    long n = 0;
    EXPECT_EQ(panel->cellDouble("MaValues", 1, 0, v), 1);
    EXPECT_DOUBLE_EQ(v, 0.333333);
    EXPECT_EQ(panel->cellInt("MaValues", 1, 1, n), 1);
    EXPECT_EQ(n, -12);
    EXPECT_EQ(panel->cellDouble("MaValues", 0, 0, v), 0);  // "name"
    EXPECT_EQ(panel->cellDouble("MaValues", 2, 0, v), 0);  // empty cell
    MatrixItemKind kind{};
    ASSERT_EQ(panel->cellKind("MaValues", 0, 1, kind), 1);
    EXPECT_EQ(kind, MatrixItemKind::FilledLabel);
    ASSERT_EQ(panel->cellKind("MaValues", 1, 1, kind), 1);
    EXPECT_EQ(kind, MatrixItemKind::Int);
    auto* table = qobject_cast<QTableWidget*>(panel->getObject("MaValues"));
    EXPECT_FALSE(table->item(0, 0)->flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(table->item(1, 0)->flags() & Qt::ItemIsEditable);
    int r = -1, c = -1;
    EXPECT_EQ(panel->selectCell("MaValues", 2, 1), 1);
    ASSERT_EQ(panel->selectedCell("MaValues", r, c), 1);
    EXPECT_EQ(r, 2);
    EXPECT_EQ(c, 1);
    EXPECT_EQ(panel->setHeader("MaValues", true, 1, "Value"), 1);
    EXPECT_EQ(panel->setHeader("MaValues", true, 2, "None"), 0);
}

TEST_F(PanelLayerTest, NotebooksMenusVisibilitySensitivityPicturesAndGauges) {
    EXPECT_EQ(panel->pageCount("NbPages"), 2);
    EXPECT_EQ(panel->setCurrentPage("NbPages", 1), 1);
    EXPECT_EQ(panel->currentPage("NbPages"), 1);
    EXPECT_EQ(panel->setCurrentPage("NbPages", 2), 0);

    // Items by index, separators counted as the menu shows them.
    ASSERT_NE(panel->menuItem("MnBar", 0, 2), nullptr);
    EXPECT_TRUE(panel->menuItem("MnBar", 0, 2)->isSeparator());
    EXPECT_EQ(panel->menuItem("MnBar", 0, 3)->text(), "three");
    EXPECT_EQ(panel->menuItem("MnBar", 1, 0)->text(), "edit");
    EXPECT_EQ(panel->menuItem("MnBar", 0, 4), nullptr);
    EXPECT_EQ(panel->menuItem("MnBar", 2, 0), nullptr);
    EXPECT_EQ(panel->setMenuItemSensitive("MnBar", 0, 3, false), 1);
    EXPECT_EQ(panel->isMenuItemSensitive("MnBar", 0, 3), 0);
    EXPECT_EQ(panel->isMenuItemSensitive("MnBar", 0, 0), 1);
    // The same menu reached as a popup by its own name.
    EXPECT_EQ(panel->popupItem("menu0", 3), panel->menuItem("MnBar", 0, 3));
    EXPECT_EQ(panel->popupItem("menu0", 4), nullptr);
    EXPECT_EQ(panel->popupItem("MnBar", 0), nullptr);
    EXPECT_EQ(panel->setPopupItemSensitive("menu0", 3, true), 1);
    EXPECT_EQ(panel->isMenuItemSensitive("MnBar", 0, 3), 1);

    EXPECT_EQ(panel->setSensitive("BGo", false), 1);
    EXPECT_EQ(panel->isSensitive("BGo"), 0);
    EXPECT_EQ(panel->setSensitive("NoSuchGadget", false), 0);
    EXPECT_EQ(panel->setVisible("MlStatus", false), 1);
    EXPECT_EQ(panel->isVisible("MlStatus"), 0);
    EXPECT_EQ(panel->setVisible("MlStatus", true, false), 1);
    EXPECT_EQ(panel->isVisible("MlStatus"), 1);

    EXPECT_EQ(panel->setBitmap("IcPicture", "../bitmaps/oleagg.gif"), 1);  // drawn as PNG
    EXPECT_EQ(qobject_cast<QLabel*>(panel->getObject("IcPicture"))->pixmap().size(), QSize(24, 20));
    EXPECT_EQ(panel->setBitmap("IcPicture", "../bitmaps/none.gif"), 0);
    EXPECT_EQ(panel->setButtonBitmap("BGo", "../bitmaps/oleaggInv.gif", ButtonState::Insensitive), 1);
    EXPECT_FALSE(qobject_cast<QPushButton*>(panel->getObject("BGo"))->icon().isNull());

    EXPECT_EQ(panel->setGaugeValue("RgProgress", 40), 1);
    EXPECT_EQ(panel->gaugeValue("RgProgress"), 40);
    EXPECT_EQ(panel->setGaugeValue("RgProgress", 140), 1);  // held to the gauge's range
    EXPECT_EQ(panel->gaugeValue("RgProgress"), 100);
}

TEST_F(PanelLayerTest, KeysPropagateToThePanelsBinding) {
    int pressed = 0;
    panel->bindKey(Qt::Key_F1, [&] { ++pressed; });
    QKeyEvent f1(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
    // Sent to a field, which doesn't take F1: it travels up to the window.
    QCoreApplication::sendEvent(panel->getGadget("TName"), &f1);
    EXPECT_EQ(pressed, 1);
    EXPECT_EQ(panel->pressKey(Qt::Key_F2), 0);
}

TEST_F(PanelLayerTest, F1OpensThePanelsHelpTopic) {
    HelpSystem::shutdown();
    EXPECT_EQ(panel->pressKey(Qt::Key_F1), 1);
    EXPECT_EQ(HelpSystem::currentPage(), "index.html");  // the help set has no page for a test panel
}

TEST_F(PanelLayerTest, ModalWaitsEndWithTheResultField) {
    // The real wait: a callback ends it.
    panel->registerCallback("go", [this] { panel->endModal(7); });
    QTimer::singleShot(0, [this] { qobject_cast<QPushButton*>(panel->getObject("BGo"))->click(); });
    EXPECT_EQ(panel->showModal(), 7);
    EXPECT_EQ(panel->modalResult(), 7);
    EXPECT_EQ(panel->isShown(), 0);
    // Closing the window ends the wait with 0.
    QTimer::singleShot(0, [this] { panel->window()->close(); });
    EXPECT_EQ(panel->showModal(), 0);
    // The hook stands in for the user.
    ModalHook hook([](Panel& p) {
        EXPECT_EQ(p.isShown(), 1);
        return 3;
    });
    EXPECT_EQ(panel->showModal(), 3);
}

TEST_F(PanelLayerTest, ClosingTheWindowRunsTheDestroyCallbackAfterTheEvent) {
    int destroyed = 0;
    panel->setDestroyCallback([&](Panel& p) {
        EXPECT_EQ(&p, panel.get());
        ++destroyed;
    });
    panel->show();
    panel->window()->close();
    EXPECT_EQ(destroyed, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(destroyed, 1);
}

TEST(PanelFiles, AMissingPanelFileLeavesAnEmptyPanelThatFailsEveryOperation) {
    PanelTestBase base;
    testing::internal::CaptureStderr();
    Panel p("Missing", "Missing", "PNoSuchPanel.ui", 0, 0, 100, 100);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(p.isLoaded(), 0);
    EXPECT_NE(err.find("PNoSuchPanel.ui"), std::string::npos);
    EXPECT_NE(p.errorText().find("PNoSuchPanel.ui"), std::string::npos);
    long v = 0;
    EXPECT_EQ(p.getObject("BOk"), nullptr);
    EXPECT_EQ(p.setLabel("BOk", "x"), 0);
    EXPECT_EQ(p.getInt("NValue", v), 0);
    EXPECT_EQ(p.selectorIndex("SeX"), -1);
    EXPECT_EQ(p.menuItem("MnMenu", 0, 0), nullptr);
    EXPECT_EQ(p.setMatrixSize("MaX", 1, 1), 0);
}

TEST(PanelFiles, AMissingPageFileIsReportedAndTheRestLoads) {
    PanelTestBase base;
    ScratchDir dir;
    std::string ui = kPanelFile;
    writeFile(dir.file("PTest.ui"), ui);  // its page PTestPage.ui is missing
    SearchPath::clear();
    SearchPath::append(dir.path().string());
    testing::internal::CaptureStderr();
    Panel p("PTest", "t", "PTest.ui", 0, 0, 100, 100);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(p.isLoaded(), 0);
    EXPECT_NE(err.find("PTestPage.ui"), std::string::npos);
    EXPECT_NE(p.getObject("BGo"), nullptr);
}

}  // namespace

namespace {

TEST(EventQueue, DrainingDispatchesWhatIsWaiting) {
    tarvex::test::qtApp();
    int ran = 0;
    QTimer::singleShot(0, [&] { ++ran; });
    QMetaObject::invokeMethod(QCoreApplication::instance(), [&] { ++ran; }, Qt::QueuedConnection);
    EXPECT_EQ(ran, 0);
    EXPECT_EQ(tarvex::EventQueue::drain(), 1);
    EXPECT_EQ(ran, 2);
}

}  // namespace
