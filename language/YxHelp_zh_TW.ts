<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW">
<context>
    <name>QObject</name>
    <message>
        <source>Error</source>
        <translation>錯誤</translation>
    </message>
</context>
<context>
    <name>YxFilterSettingWid</name>
    <message>
        <source>Configure Filtering Conditions:</source>
        <translation>設定篩選條件：</translation>
    </message>
</context>
<context>
    <name>YxHelp</name>
    <message>
        <source>Error</source>
        <translation>錯誤</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>複製</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>上一頁</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>下一頁</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>重新載入</translation>
    </message>
    <message>
        <source>View Source</source>
        <translation>檢視原始碼</translation>
    </message>
    <message>
        <source>Save Page</source>
        <translation>儲存頁面</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>剪下</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>貼上</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>全選</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>刪除</translation>
    </message>
    <message>
        <source>Add to favorites</source>
        <translation>加入我的最愛</translation>
    </message>
    <message>
        <source>You are currently viewing online documents.Click here to switch to offline mode.</source>
        <translation>目前檢視的是線上文件。按一下此處可切換到離線模式。</translation>
    </message>
    <message>
        <source>You are currently viewing offline documents.Click here to switch to online mode.</source>
        <translation>目前檢視的是離線文件。按一下此處可切換到線上模式。</translation>
    </message>
    <message>
        <source>Print Preview</source>
        <translation>預覽列印</translation>
    </message>
    <message>
        <source>The current network is unstable, and the online document failed to load.</source>
        <translation>目前網路不穩定，線上文件載入失敗。</translation>
    </message>
    <message>
        <source>Failed to load online help documentation. Would you like to switch to offline mode?</source>
        <translation>線上說明文件載入失敗，要切換到離線模式嗎？</translation>
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
        <translation>YXCAD 說明</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>上一頁</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>下一頁</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>重新載入</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <source>Online</source>
        <translation>線上</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>關閉</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>首頁</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>我的最愛</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>列印</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜尋</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>篩選</translation>
    </message>
    <message>
        <source>Total Favorites:</source>
        <translation>我的最愛總數：</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Total Find:</source>
        <translation>結果總數：</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>目錄</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>索引</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>結果</translation>
    </message>
    <message>
        <source>about:blank</source>
        <translation>about:blank</translation>
    </message>
    <message>
        <source>Copyright © %1 YXSOFT. All rights reserved.</source>
        <translation>著作權所有 © %1 YXSOFT。保留一切權利。</translation>
    </message>
</context>
<context>
    <name>YxInfoWid</name>
    <message>
        <source>Hint</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>No longer prompt</source>
        <translation>不再提示</translation>
    </message>
    <message>
        <source>NO</source>
        <translation>否</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>確定</translation>
    </message>
</context>
<context>
    <name>YxSettingWid</name>
    <message>
        <source>Setting</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Display online help documentation by default</source>
        <translation>預設顯示線上說明文件</translation>
    </message>
    <message>
        <source>Display offline help documentation by default</source>
        <translation>預設顯示離線說明文件</translation>
    </message>
    <message>
        <source>Auto-switching</source>
        <translation>自動切換</translation>
    </message>
    <message>
        <source>Switching reminder</source>
        <translation>切換提醒</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>確定</translation>
    </message>
</context>
</TS>
