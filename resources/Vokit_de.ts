<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ActionLog</name>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Access</source>
        <translation>Zugriff</translation>
    </message>
    <message>
        <source>Logon &amp; Logoff</source>
        <translation>Anmeldung &amp; Abmeldung</translation>
    </message>
    <message>
        <source>User &amp; Groups</source>
        <translation>Benutzer &amp; Gruppen</translation>
    </message>
    <message>
        <source>Authorize</source>
        <translation>Autorisierung</translation>
    </message>
    <message>
        <source>Software updates</source>
        <translation>Software-Updates</translation>
    </message>
    <message>
        <source>Camera Settings</source>
        <translation>Kameraeinstellungen</translation>
    </message>
    <message>
        <source>Web browser</source>
        <translation>Webbrowser</translation>
    </message>
    <message>
        <source>Network messages</source>
        <translation>Netzwerkmeldungen</translation>
    </message>
    <message>
        <source>Softbuttons</source>
        <translation>Softbuttons</translation>
    </message>
    <message>
        <source>Formatting</source>
        <translation>Formatierung</translation>
    </message>
    <message>
        <source>Voco configuration</source>
        <translation>Voco-Konfiguration</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Layout Manager</source>
        <translation>Layout-Manager</translation>
    </message>
    <message>
        <source>Display scaling</source>
        <translation>Anzeigeskalierung</translation>
    </message>
    <message>
        <source>Context menus</source>
        <translation>Kontextmenüs</translation>
    </message>
    <message>
        <source>Upload Assistant</source>
        <translation>Update-Assistent</translation>
    </message>
    <message>
        <source>Action log</source>
        <translation>Aktionsprotokoll</translation>
    </message>
    <message>
        <source>Event Search</source>
        <translation>Ereignissuche</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Local archive</source>
        <translation>Lokales Archiv</translation>
    </message>
    <message>
        <source>Video search</source>
        <translation>Videosuche</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Viewing</source>
        <translation>Betrachtung</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Alarm</translation>
    </message>
    <message>
        <source>Sequencer</source>
        <translation>Sequenzer</translation>
    </message>
    <message>
        <source>Layout</source>
        <translation>Layout</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>PTZ</source>
        <translation>PTZ</translation>
    </message>
    <message>
        <source>PTZ post</source>
        <translation>Post-PTZ</translation>
    </message>
    <message>
        <source>PTZ config</source>
        <translation>PTZ-Konfiguration</translation>
    </message>
    <message>
        <source>PTZ post config</source>
        <translation>Post-PTZ-Konfiguration</translation>
    </message>
    <message>
        <source>Signal outs</source>
        <translation>Signalausgänge</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Remote control</source>
        <translation>Fernsteuerung</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>Switched log</source>
        <translation>Protokoll gewechselt</translation>
    </message>
    <message>
        <source>Switched logging from &apos;%1&apos; to &apos;%2&apos;.</source>
        <translation>Die Protokollierung wurde von &apos;%1&apos; auf &apos;%2&apos; umgestellt.</translation>
    </message>
    <message>
        <source>Export written</source>
        <translation>Export geschrieben</translation>
    </message>
    <message>
        <source>Export start</source>
        <translation>Exportstart</translation>
    </message>
    <message>
        <source>Export abort</source>
        <translation>Exportabbruch</translation>
    </message>
    <message>
        <source>Export error</source>
        <translation>Exportfehler</translation>
    </message>
    <message>
        <source>Export done</source>
        <translation>Export abgeschlossen</translation>
    </message>
    <message>
        <source>Export rename</source>
        <translation>Export umbenannt</translation>
    </message>
    <message>
        <source>Action log error</source>
        <translation>Fehler im Aktionsprotokoll</translation>
    </message>
    <message>
        <source>Error &apos;%1&apos; reading action log &apos;%2&apos; in line &apos;%3&apos;, column &apos;%4&apos;.</source>
        <translation>Fehler &apos;%1&apos; beim Lesen des Aktionsprotokolls &apos;%2&apos; in Zeile &apos;%3&apos;, Spalte &apos;%4&apos;.</translation>
    </message>
    <message>
        <source>Action log &apos;%1&apos; invalid header version.</source>
        <translation>Ungültige Version des Dateikopfs im Aktionsprotokoll &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Could not open file &apos;%1&apos;</source>
        <translation>Die Datei &apos;%1&apos; konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Error reading log file &apos;%1&apos;; Line &apos;%2&apos;; Column &apos;%3&apos;</source>
        <translation>Fehler beim Lesen der Protokolldatei &apos;%1&apos;; Zeile &apos;%2&apos;; Spalte &apos;%3&apos;</translation>
    </message>
    <message>
        <source>Could not logon user &apos;%1&apos; (error code &apos;%2&apos;).
Please check your settings in &apos;Tools &gt; Options &gt; Logging&apos;!</source>
        <translation>Der Benutzer &apos;%1&apos; konnte nicht angemeldet werden (Fehlercode &apos;%2&apos;).
Bitte überprüfen Sie Ihre Einstellungen unter &apos;Extras &gt; Optionen &gt; Protokollierung&apos;!</translation>
    </message>
</context>
<context>
    <name>ExportActionLog</name>
    <message>
        <source>Bitmap</source>
        <translation>Bitmap</translation>
    </message>
    <message>
        <source>JPEG</source>
        <translation>JPEG</translation>
    </message>
    <message>
        <source>Vodec clip</source>
        <translation>Vodec-Clip</translation>
    </message>
    <message>
        <source>AVI</source>
        <translation>AVI</translation>
    </message>
    <message>
        <source>MP4</source>
        <translation>MP4</translation>
    </message>
    <message>
        <source>MOV</source>
        <translation>MOV</translation>
    </message>
    <message>
        <source>WebM</source>
        <translation>WebM</translation>
    </message>
    <message>
        <source>Matroska</source>
        <translation>Matroska</translation>
    </message>
    <message>
        <source>VORTENA file server storage</source>
        <translation>VORTENA-Dateiserverspeicher</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>Drucker</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Finished</source>
        <translation>Abgeschlossen</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abbruch</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>ExportFormats</name>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;.</source>
        <translation>Format=&apos;%1&apos;; Quelle=&apos;%2&apos;.</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Target=&apos;%3&apos;.</source>
        <translation>Format=&apos;%1&apos;; Quelle=&apos;%2&apos;; Ziel=&apos;%3&apos;.</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Timestamp=&apos;%4&apos;.%3</source>
        <translation>Format=&apos;%1&apos;; Quelle=&apos;%2&apos;; Zeitstempel=&apos;%4&apos;.%3</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Timestamp=&apos;%4&apos;; Target=&apos;%3&apos;.</source>
        <translation>Format=&apos;%1&apos;; Quelle=&apos;%2&apos;; Zeitstempel=&apos;%4&apos;; Ziel=&apos;%3&apos;.</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Date and time from=&apos;%4&apos;; Date and time to &apos;%5&apos;.%3</source>
        <translation>Format=&apos;%1&apos;; Quelle=&apos;%2&apos;; Datum und Uhrzeit von=&apos;%4&apos;; Datum und Uhrzeit bis &apos;%5&apos;.%3</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Date and time from=&apos;%4&apos;; Date and time to &apos;%5&apos;; Target=&apos;%3&apos;.</source>
        <translation>Format=&apos;%1&apos;; Quelle=&apos;%2&apos;; Datum und Uhrzeit von=&apos;%4&apos;; Datum und Uhrzeit bis &apos;%5&apos;; Ziel=&apos;%3&apos;.</translation>
    </message>
    <message>
        <source>&apos;%1%2&apos; to &apos;%1%3&apos;.</source>
        <translation>&apos;%1%2&apos; in &apos;%1%3&apos; umbenannt.</translation>
    </message>
</context>
<context>
    <name>vo::ActionLog</name>
    <message>
        <source>ActionLog</source>
        <translation>Aktionsprotokoll</translation>
    </message>
</context>
<context>
    <name>DefaultIntValidator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Wert außerhalb des zulässigen Bereichs.</translation>
    </message>
</context>
<context>
    <name>DefaultUIntValidator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Wert außerhalb des zulässigen Bereichs.</translation>
    </message>
</context>
<context>
    <name>DefaultU64Validator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Wert außerhalb des zulässigen Bereichs.</translation>
    </message>
</context>
<context>
    <name>DefaultFloatValidator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Wert außerhalb des zulässigen Bereichs.</translation>
    </message>
</context>
<context>
    <name>DefaultDoubleValidator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Wert außerhalb des zulässigen Bereichs.</translation>
    </message>
</context>
</TS>
