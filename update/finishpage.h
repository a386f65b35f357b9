#pragma once
// The wizard's last page: what the update or the rollback came to.

#include <QLabel>
#include <QWizardPage>

class FinishPage : public QWizardPage {
    Q_OBJECT
public:
    FinishPage(const QString &productName, QWidget *parent = nullptr);

    void initializePage() override;
    int nextId() const override;

    QLabel *label = nullptr;

public slots:
    void UpdateComplete(QString title);
};
