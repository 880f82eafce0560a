#pragma once

#include "core/params/ParamEditSystem.h"

#include <QWidget>

#include <array>

class QCloseEvent;
class QHideEvent;
class QLabel;
class QLineEdit;
class QShowEvent;
class QTabWidget;

namespace velora {

struct ParamTables;

// The system parameter window: parameters 60-119 on six tabs of ten, box k showing parameter
// 60 + k under its fixed caption. A value outside the range is refused, never clamped, and the
// boxes keep their colour. It has no buttons: the parameter window's Write Servo writes these
// values too. Closing it only hides it.
class SprmTblWindow : public QWidget {
    Q_OBJECT
public:
    explicit SprmTblWindow(ParamTables& tables, QWidget* parent = nullptr);
    ~SprmTblWindow() override;
    Q_DISABLE_COPY_MOVE(SprmTblWindow)

    // Box k shows the table value of parameter 60 + k.
    void showValue(int k);
    void showAllValues();
    void setBoxesEnabled(bool enable);

signals:
    // The window was shown or hidden: the one-by-one read reaches 119 only while it is shown.
    void shownChanged(bool shown);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] int boxIndex(const QObject* object) const;
    void onKey(int k, FieldKey key);
    void onLeave(int k);

    SprmEdit edit_;
    QTabWidget* SSTabSprm = nullptr;
    std::array<QLineEdit*, SprmEdit::BoxCount> TxtPrm{};
    std::array<QLabel*, SprmEdit::BoxCount> Label1{};
};

}  // namespace velora
