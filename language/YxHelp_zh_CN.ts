<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>QObject</name>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
</context>
<context>
    <name>YxFilterSettingWid</name>
    <message>
        <source>Configure Filtering Conditions:</source>
        <translation>设置筛选条件：</translation>
    </message>
</context>
<context>
    <name>YxHelp</name>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>后退</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>前进</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>刷新</translation>
    </message>
    <message>
        <source>View Source</source>
        <translation>查看源代码</translation>
    </message>
    <message>
        <source>Save Page</source>
        <translation>保存页面</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>剪切</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>粘贴</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Add to favorites</source>
        <translation>添加到收藏夹</translation>
    </message>
    <message>
        <source>You are currently viewing online documents.Click here to switch to offline mode.</source>
        <translation>当前浏览的是在线文档。单击此处可切换到离线模式。</translation>
    </message>
    <message>
        <source>You are currently viewing offline documents.Click here to switch to online mode.</source>
        <translation>当前浏览的是离线文档。单击此处可切换到在线模式。</translation>
    </message>
    <message>
        <source>Print Preview</source>
        <translation>打印预览</translation>
    </message>
    <message>
        <source>The current network is unstable, and the online document failed to load.</source>
        <translation>当前网络不稳定，在线文档加载失败。</translation>
    </message>
    <message>
        <source>Failed to load online help documentation. Would you like to switch to offline mode?</source>
        <translation>在线帮助文档加载失败，是否切换到离线模式？</translation>
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
        <translation>YXCAD 帮助</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>后退</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>前进</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>刷新</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <source>Online</source>
        <translation>在线</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>设置</translation>
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
        <translation>关闭</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>主页</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>收藏夹</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>打印</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>筛选</translation>
    </message>
    <message>
        <source>Total Favorites:</source>
        <translation>收藏总数：</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Total Find:</source>
        <translation>结果总数：</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>目录</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>索引</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>结果</translation>
    </message>
    <message>
        <source>about:blank</source>
        <translation>about:blank</translation>
    </message>
    <message>
        <source>Copyright © %1 YXSOFT. All rights reserved.</source>
        <translation>版权所有 © %1 YXSOFT。保留所有权利。</translation>
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
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>YxSettingWid</name>
    <message>
        <source>Setting</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Display online help documentation by default</source>
        <translation>默认显示在线帮助文档</translation>
    </message>
    <message>
        <source>Display offline help documentation by default</source>
        <translation>默认显示离线帮助文档</translation>
    </message>
    <message>
        <source>Auto-switching</source>
        <translation>自动切换</translation>
    </message>
    <message>
        <source>Switching reminder</source>
        <translation>切换提醒</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
</TS>
