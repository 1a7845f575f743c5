// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>

class QCheckBox;

/// Offers at the first start what there is to begin with.
class WelcomeDialog final : public QDialog
{
    Q_OBJECT

public:
    enum class Choice { Nothing, SampleLibrary, OwnLibrary };

    /// \a sampleLibrary may be "": then there is none to offer.
    WelcomeDialog(const QString &sampleLibrary, QWidget *parent);

    Choice choice() const { return _choice; }
    bool wantsTour() const;

private:
    void choose(Choice choice);

    Choice _choice = Choice::Nothing;
    QCheckBox *_tour;
};
