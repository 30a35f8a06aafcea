#include "yxhelp.h"

#include "dpiscale.h"
#include "redirectonlinewebenginepage.h"
#include "redirectwebenginepage.h"
#include "ui_yxhelpapp.h"
#include "yxglobalsignal.h"

void YxHelp::ChangeDpi(int dpi)
{
    if (UpdateScale(dpi))
        emit YxGlobalSignal::Instance()->dpiChange();
}

void YxHelp::UpdateDpiStyle(bool first)
{
    if (!scaleActive)
        return;
    SetFromDesign(first);
    ScaleMinimumHeight(this);
    ScaleMinimumWidth(this);

    for (QToolButton* button :
         {ui->tbn_titleIcon, ui->tbn_flash, ui->tbn_back, ui->tbn_nextO, ui->tbn_online, ui->tbn_setting,
          ui->tbn_min, ui->tbn_maxMin, ui->tbn_close, static_cast<QToolButton*>(ui->tbn_home),
          static_cast<QToolButton*>(ui->tbn_pre), static_cast<QToolButton*>(ui->tbn_next),
          static_cast<QToolButton*>(ui->tbn_favoritesQuick), static_cast<QToolButton*>(ui->tbn_print),
          static_cast<QToolButton*>(ui->tbn_contextFind), static_cast<QToolButton*>(ui->tbn_Filter)}) {
        ScaleSize(button);
        ScaleIconSize(button);
    }
    for (QWidget* widget :
         std::initializer_list<QWidget*>{ui->tbn_context, ui->tbn_index, ui->tbn_favorites, ui->tbn_result,
                                         ui->fram_topTitle, ui->frame_bottom})
        ScaleMinimumHeight(widget);
    for (QWidget* widget : std::initializer_list<QWidget*>{ui->line_2, ui->line_3, ui->line_4,
                                                           ui->frame_topOpt, ui->lineEdit_index}) {
        ScaleMinimumHeight(widget);
        ScaleMaximumHeight(widget);
    }
    ScaleMinimumWidth(ui->frame_wizard);
    ScaleMaximumWidth(ui->frame_wizard);
    for (QLayout* layout : std::initializer_list<QLayout*>{
             ui->verticalLayout_2,      ui->horizontalLayout_21, ui->horizontalLayout_20,
             ui->verticalLayout,        ui->verticalLayout_12,   ui->horizontalLayout,
             ui->horizontalLayout_3,    ui->verticalLayout_8,    ui->verticalLayout_11,
             ui->horizontalLayout_6,    ui->horizontalLayout_7,  ui->verticalLayout_9,
             ui->verticalLayout_10,     ui->verticalLayout_13,   ui->horizontalLayout_2,
             ui->verticalLayout_Filter, ui->verticalLayout_15,   ui->horizontalLayout_4,
             ui->verticalLayout_6,      ui->verticalLayout_5,    ui->verticalLayout_7,
             ui->horizontalLayout_5})
        ScaleLayout(layout);
    for (QWidget* widget : std::initializer_list<QWidget*>{
             ui->label_title, ui->tbn_context, ui->tbn_index, ui->tbn_favorites, ui->tbn_result,
             ui->label_copyright, ui->lab_resutlNumL, ui->lab_resutlNum, ui->lab_favoriteNumL,
             ui->lab_favoriteNum, ui->label_proTtile})
        ScaleFont(widget);

    ApplyRowStyle();
    offlinePage->setZoomFactor(currentScale);
    onlinePage->setZoomFactor(currentScale);
}

void YxHelp::ApplyRowStyle()
{
    const QString style =
        QStringLiteral("QTreeView::branch{background:white;}"
                       "QTreeView::branch:open:has-children:has-siblings,"
                       "QTreeView::branch:open:has-children:!has-siblings"
                       "{image:url(:/Resource/CommonResources/icon_expand.png);}"
                       "QTreeView::branch:closed:has-children:has-siblings,"
                       "QTreeView::branch:closed:has-children:!has-siblings"
                       "{image:url(:/Resource/CommonResources/icon_fold.png);}"
                       "QTreeView{background:white;font-size:%2px;}"
                       "QTreeView::item{margin-top:%1px;margin-bottom:%1px;}"
                       "QTreeView::item:hover{color:rgb(0, 0, 0);background:rgb(234, 234, 234);"
                       "margin-top:%1px;margin-bottom:%1px;}"
                       "QTreeView::item:selected{color:rgb(0, 0, 0);background:rgb(216, 227, 243);"
                       "margin-top:%1px;margin-bottom:%1px;}"
                       "QTreeView::item:selected:active{background:rgb(238, 245, 255);"
                       "margin-top:%1px;margin-bottom:%1px;}")
            .arg(ScaleValue(3))
            .arg(ScaleValue(12));
    for (QTreeWidget* tree :
         {ui->treeWidget, ui->treeWidget_index, ui->treeWidget_favorites, ui->treeWidget_result})
        tree->setStyleSheet(style);
    for (QTreeWidget* tree : {ui->treeWidget, ui->treeWidget_favorites})
        tree->setIndentation(ScaleValue(10));
}
