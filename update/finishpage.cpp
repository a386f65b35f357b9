#include "finishpage.h"

#include <QVBoxLayout>
#include <QWizard>

FinishPage::FinishPage(const QString &, QWidget *parent) : QWizardPage(parent)
{
    setTitle(tr("Complete"));
    setPixmap(QWizard::WatermarkPixmap, QPixmap(QStringLiteral(":/images/watermark.png")));
    label = new QLabel(this);
    label->setWordWrap(true);
    label->setOpenExternalLinks(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
}

void FinishPage::initializePage()
{
}

int FinishPage::nextId() const
{
    return -1;
}

void FinishPage::UpdateComplete(QString title)
{
    label->setText(title);
}
