#pragma once

#include <QComboBox>

/// A combo box that tells when its list is about to open and when it has closed, so that a page can
/// fill it with what the server has by then.
class TDropDownCombo : public QComboBox
{
    Q_OBJECT
public:
    using QComboBox::QComboBox;
    void showPopup() override
    {
        Q_EMIT OnDropDown();
        QComboBox::showPopup();
    }
    void hidePopup() override
    {
        QComboBox::hidePopup();
        Q_EMIT OnCloseUp();
    }

Q_SIGNALS:
    void OnDropDown();
    void OnCloseUp();
};
