#pragma once

#include <QString>
#include <QVector>
#include <QWidget>

#include <memory>

class QCheckBox;

namespace Ui {
class YxFilterSettingWid;
}

/// A top-level category of the help.
struct HelpCategory
{
    QString name;
    int id = 0;
};

/// Panel under the search line by which the user leaves categories out of the results. Every run begins with
/// all of them ticked.
class YxFilterSettingWid : public QWidget
{
    Q_OBJECT

public:
    YxFilterSettingWid();
    ~YxFilterSettingWid() override;

    /// Makes a box for each category; to be called once.
    void SetCategories(QVector<HelpCategory> list);
    /// Ids of the categories that aren't ticked, in the order of the boxes.
    QVector<int> GetExcludedCategories();

signals:
    /// A box has changed; carries what GetExcludedCategories returns.
    void FileterChangeSig(QVector<int> excluded);

private:
    void Scale(bool first);
    void CollectExcluded();

    std::unique_ptr<Ui::YxFilterSettingWid> ui;
    QVector<HelpCategory> categories;
    QVector<QCheckBox*> checkBoxes;
    QVector<int> excluded;
};
