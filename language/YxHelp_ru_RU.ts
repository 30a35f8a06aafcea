<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU">
<context>
    <name>QObject</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
</context>
<context>
    <name>YxFilterSettingWid</name>
    <message>
        <source>Configure Filtering Conditions:</source>
        <translation>Настройка условий фильтра:</translation>
    </message>
</context>
<context>
    <name>YxHelp</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Копировать</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Назад</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Вперёд</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Обновить</translation>
    </message>
    <message>
        <source>View Source</source>
        <translation>Исходный код</translation>
    </message>
    <message>
        <source>Save Page</source>
        <translation>Сохранить страницу</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Вырезать</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Вставить</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Выделить всё</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Add to favorites</source>
        <translation>Добавить в избранное</translation>
    </message>
    <message>
        <source>You are currently viewing online documents.Click here to switch to offline mode.</source>
        <translation>Открыта онлайн-документация. Щёлкните здесь, чтобы перейти в автономный режим.</translation>
    </message>
    <message>
        <source>You are currently viewing offline documents.Click here to switch to online mode.</source>
        <translation>Открыта автономная документация. Щёлкните здесь, чтобы перейти в онлайн-режим.</translation>
    </message>
    <message>
        <source>Print Preview</source>
        <translation>Предварительный просмотр</translation>
    </message>
    <message>
        <source>The current network is unstable, and the online document failed to load.</source>
        <translation>Сеть работает нестабильно, не удалось загрузить онлайн-документ.</translation>
    </message>
    <message>
        <source>Failed to load online help documentation. Would you like to switch to offline mode?</source>
        <translation>Не удалось загрузить онлайн-справку. Перейти в автономный режим?</translation>
    </message>
</context>
<context>
    <name>YxHelpApp</name>
    <message>
        <source>YxHelpApp</source>
        <translation>YxHelpApp</translation>
    </message>
    <message>
        <source>YXCAD Help</source>
        <translation>Справка YXCAD</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Назад</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Вперёд</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Обновить</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <source>Online</source>
        <translation>Онлайн</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Свернуть</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>Развернуть</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Главная страница</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Избранное</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Печать</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Найти</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Фильтр</translation>
    </message>
    <message>
        <source>Total Favorites:</source>
        <translation>Всего в избранном:</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Total Find:</source>
        <translation>Всего найдено:</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Темы</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>Указатель</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Поиск</translation>
    </message>
    <message>
        <source>about:blank</source>
        <translation>about:blank</translation>
    </message>
    <message>
        <source>Copyright © %1 YXSOFT. All rights reserved.</source>
        <translation>© %1 YXSOFT. Все права защищены.</translation>
    </message>
</context>
<context>
    <name>YxInfoWid</name>
    <message>
        <source>Hint</source>
        <translation>Подсказка</translation>
    </message>
    <message>
        <source>No longer prompt</source>
        <translation>Больше не спрашивать</translation>
    </message>
    <message>
        <source>NO</source>
        <translation>Нет</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
</context>
<context>
    <name>YxSettingWid</name>
    <message>
        <source>Setting</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>Display online help documentation by default</source>
        <translation>По умолчанию показывать онлайн-справку</translation>
    </message>
    <message>
        <source>Display offline help documentation by default</source>
        <translation>По умолчанию показывать автономную справку</translation>
    </message>
    <message>
        <source>Auto-switching</source>
        <translation>Автопереключение</translation>
    </message>
    <message>
        <source>Switching reminder</source>
        <translation>Напоминать о переключении</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
</context>
</TS>
