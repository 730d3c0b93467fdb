#pragma once
// What the model panels' tests share: a factor list by names, widget actions as the
// user does them, and the text forms the engine writes.
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "../../panels/PanelTestSupport.h"
#include "correlation/FactorList.h"
#include "factors/Uniform.h"
#include "model/InternalModel.h"
#include "model/ModelConfiguration.h"

namespace tarvex::test {

inline FactorList factorsNamed(const std::vector<std::string>& names) {
    FactorList list;
    for (const std::string& n : names) {
        auto u = std::make_unique<Uniform>();
        if (!u->setName(n) || !list.addFactor(std::move(u))) ADD_FAILURE() << "factor " << n;
    }
    return list;
}

inline void click(Panel& p, const std::string& button) {
    auto* b = qobject_cast<QAbstractButton*>(p.getObject(button));
    ASSERT_NE(b, nullptr) << button;
    b->click();
}

inline void typeInto(Panel& p, const std::string& field, const std::string& text) {
    auto* e = qobject_cast<QLineEdit*>(p.getObject(field));
    ASSERT_NE(e, nullptr) << field;
    e->setText(QString::fromStdString(text));
}

inline void clickRow(Panel& p, const std::string& matrix, int row) {
    auto* t = qobject_cast<QTableWidget*>(p.getObject(matrix));
    ASSERT_NE(t, nullptr) << matrix;
    t->setCurrentCell(row, 0);
    emit t->cellClicked(row, 0);
}

inline std::string imdText(InternalModel& m) {
    std::ostringstream s;
    m.write(s);
    return s.str();
}

inline std::string recordText(const ModelConfiguration& m) {
    std::ostringstream s;
    m.write(s);
    return s.str();
}

}  // namespace tarvex::test
