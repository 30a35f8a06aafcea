<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>QObject</name>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>YxFilterSettingWid</name>
    <message>
        <source>Configure Filtering Conditions:</source>
        <translation>Filterbedingungen festlegen:</translation>
    </message>
</context>
<context>
    <name>YxHelp</name>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>View Source</source>
        <translation>Quelltext anzeigen</translation>
    </message>
    <message>
        <source>Save Page</source>
        <translation>Seite speichern</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Add to favorites</source>
        <translation>Zu Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>You are currently viewing online documents.Click here to switch to offline mode.</source>
        <translation>Sie lesen gerade die Online-Dokumentation. Klicken Sie hier, um in den Offlinemodus zu wechseln.</translation>
    </message>
    <message>
        <source>You are currently viewing offline documents.Click here to switch to online mode.</source>
        <translation>Sie lesen gerade die Offline-Dokumentation. Klicken Sie hier, um in den Onlinemodus zu wechseln.</translation>
    </message>
    <message>
        <source>Print Preview</source>
        <translation>Druckvorschau</translation>
    </message>
    <message>
        <source>The current network is unstable, and the online document failed to load.</source>
        <translation>Die Netzwerkverbindung ist instabil. Das Online-Dokument konnte nicht geladen werden.</translation>
    </message>
    <message>
        <source>Failed to load online help documentation. Would you like to switch to offline mode?</source>
        <translation>Die Online-Hilfe konnte nicht geladen werden. Möchten Sie in den Offlinemodus wechseln?</translation>
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
        <translation>YXCAD-Hilfe</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <source>Online</source>
        <translation>Online</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>Maximieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Drucken</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtern</translation>
    </message>
    <message>
        <source>Total Favorites:</source>
        <translation>Favoriten insgesamt:</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Total Find:</source>
        <translation>Treffer insgesamt:</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>Index</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>about:blank</source>
        <translation>about:blank</translation>
    </message>
    <message>
        <source>Copyright © %1 YXSOFT. All rights reserved.</source>
        <translation>Copyright © %1 YXSOFT. Alle Rechte vorbehalten.</translation>
    </message>
</context>
<context>
    <name>YxInfoWid</name>
    <message>
        <source>Hint</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>No longer prompt</source>
        <translation>Nicht mehr nachfragen</translation>
    </message>
    <message>
        <source>NO</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>YxSettingWid</name>
    <message>
        <source>Setting</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Display online help documentation by default</source>
        <translation>Standardmäßig die Online-Hilfe anzeigen</translation>
    </message>
    <message>
        <source>Display offline help documentation by default</source>
        <translation>Standardmäßig die Offline-Hilfe anzeigen</translation>
    </message>
    <message>
        <source>Auto-switching</source>
        <translation>Automatisch wechseln</translation>
    </message>
    <message>
        <source>Switching reminder</source>
        <translation>Vor dem Wechsel fragen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
</TS>
