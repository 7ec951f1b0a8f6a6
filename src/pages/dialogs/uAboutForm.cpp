#include "pages/dialogs/uAboutForm.h"

#include "shell/uVersion.h"
#include "widgets/uIcons.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

void TAboutForm::Execute(QWidget *owner)
{
    TAboutForm form(owner);
    form.exec();
}

TAboutForm::TAboutForm(QWidget *owner) : QDialog(owner)
{
    setObjectName("frmAbout");
    setWindowTitle("About Korvane");
    auto *column = new QVBoxLayout(this);
    auto *row = new QHBoxLayout;
    auto *labIcon = new QLabel(this);
    labIcon->setPixmap(TIcons::Icon("app").pixmap(fontMetrics().height() * 5));
    row->addWidget(labIcon, 0, Qt::AlignTop);
    row->addSpacing(fontMetrics().height());
    auto *labText = new QLabel(this);
    labText->setObjectName("labAbout");
    labText->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    labText->setText(QString("<h2>Korvane %1</h2>"
                             "<p>A workbench for MySQL and MariaDB servers.</p>"
                             "<p>Free software under the GNU General Public License, version 3 or "
                             "later.<br>It comes without any warranty.</p>"
                             "<p>Qt %2</p>")
                         .arg(AppVersion, qVersion()));
    row->addWidget(labText, 1);
    column->addLayout(row);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("butOK");
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
}
