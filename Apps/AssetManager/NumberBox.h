// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDoubleSpinBox>

/// A number of one or of several objects, which may differ in it. The wheel changes it only while it has the focus.
class NumberBox final : public QDoubleSpinBox
{
    Q_OBJECT

public:
    explicit NumberBox(QWidget *parent = nullptr);
    ~NumberBox() override;

    /// Shows the number that all have.
    void showNumber(double number);
    /// Says that they differ; steps start from \a first.
    void showSeveral(double first);
    /// The same while the focus stays, for steps that belong together; never 0.
    int gesture() const { return _gesture; }

    QString textFromValue(double value) const override;
    double valueFromText(const QString &text) const override;
    QValidator::State validate(QString &text, int &position) const override;
    void stepBy(int steps) override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// A person set the number.
    void numberEdited(double number);

private:
    void focusInEvent(QFocusEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void commit();
    void showBeginning();

    bool _isSeveral = false;
    bool _isTyped = false; ///< since it was last shown
    int _gesture;
};
