<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>ActionLog</name>
    <message>
        <source>None</source>
        <translation>Aucune</translation>
    </message>
    <message>
        <source>Access</source>
        <translation>Accès</translation>
    </message>
    <message>
        <source>Logon &amp; Logoff</source>
        <translation>Connexion &amp; déconnexion</translation>
    </message>
    <message>
        <source>User &amp; Groups</source>
        <translation>Utilisateurs &amp; groupes</translation>
    </message>
    <message>
        <source>Authorize</source>
        <translation>Autorisation</translation>
    </message>
    <message>
        <source>Software updates</source>
        <translation>Mises à jour logicielles</translation>
    </message>
    <message>
        <source>Camera Settings</source>
        <translation>Paramètres de caméra</translation>
    </message>
    <message>
        <source>Web browser</source>
        <translation>Navigateur Web</translation>
    </message>
    <message>
        <source>Network messages</source>
        <translation>Messages réseau</translation>
    </message>
    <message>
        <source>Softbuttons</source>
        <translation>Boutons logiciels</translation>
    </message>
    <message>
        <source>Formatting</source>
        <translation>Formatage</translation>
    </message>
    <message>
        <source>Voco configuration</source>
        <translation>Configuration de Voco</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Layout Manager</source>
        <translation>Gestionnaire de dispositions</translation>
    </message>
    <message>
        <source>Display scaling</source>
        <translation>Mise à l&apos;échelle de l&apos;affichage</translation>
    </message>
    <message>
        <source>Context menus</source>
        <translation>Menus contextuels</translation>
    </message>
    <message>
        <source>Upload Assistant</source>
        <translation>Assistant de téléchargement</translation>
    </message>
    <message>
        <source>Action log</source>
        <translation>Journal d&apos;actions</translation>
    </message>
    <message>
        <source>Event Search</source>
        <translation>Recherche d&apos;événements</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportation</translation>
    </message>
    <message>
        <source>Local archive</source>
        <translation>Archive locale</translation>
    </message>
    <message>
        <source>Video search</source>
        <translation>Recherche vidéo</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Lecture</translation>
    </message>
    <message>
        <source>Viewing</source>
        <translation>Visualisation</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>Sequencer</source>
        <translation>Séquenceur</translation>
    </message>
    <message>
        <source>Layout</source>
        <translation>Disposition</translation>
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
        <translation>PTZ à posteriori</translation>
    </message>
    <message>
        <source>PTZ config</source>
        <translation>Configuration PTZ</translation>
    </message>
    <message>
        <source>PTZ post config</source>
        <translation>Configuration PTZ à posteriori</translation>
    </message>
    <message>
        <source>Signal outs</source>
        <translation>Sorties de signal</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Remote control</source>
        <translation>Contrôle à distance</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Périphériques</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Système</translation>
    </message>
    <message>
        <source>Switched log</source>
        <translation>Changement de journal</translation>
    </message>
    <message>
        <source>Switched logging from &apos;%1&apos; to &apos;%2&apos;.</source>
        <translation>La journalisation est passée de &apos;%1&apos; à &apos;%2&apos;.</translation>
    </message>
    <message>
        <source>Export written</source>
        <translation>Fichier d&apos;exportation écrit</translation>
    </message>
    <message>
        <source>Export start</source>
        <translation>Début de l&apos;exportation</translation>
    </message>
    <message>
        <source>Export abort</source>
        <translation>Abandon de l&apos;exportation</translation>
    </message>
    <message>
        <source>Export error</source>
        <translation>Erreur d&apos;exportation</translation>
    </message>
    <message>
        <source>Export done</source>
        <translation>Exportation terminée</translation>
    </message>
    <message>
        <source>Export rename</source>
        <translation>Exportation renommée</translation>
    </message>
    <message>
        <source>Action log error</source>
        <translation>Erreur du journal d&apos;actions</translation>
    </message>
    <message>
        <source>Error &apos;%1&apos; reading action log &apos;%2&apos; in line &apos;%3&apos;, column &apos;%4&apos;.</source>
        <translation>Erreur &apos;%1&apos; lors de la lecture du journal d&apos;actions &apos;%2&apos; à la ligne &apos;%3&apos;, colonne &apos;%4&apos;.</translation>
    </message>
    <message>
        <source>Action log &apos;%1&apos; invalid header version.</source>
        <translation>Version d&apos;en-tête non valide dans le journal d&apos;actions &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Could not open file &apos;%1&apos;</source>
        <translation>Impossible d&apos;ouvrir le fichier &apos;%1&apos;</translation>
    </message>
    <message>
        <source>Error reading log file &apos;%1&apos;; Line &apos;%2&apos;; Column &apos;%3&apos;</source>
        <translation>Erreur lors de la lecture du fichier journal &apos;%1&apos;&#xa0;; ligne &apos;%2&apos;&#xa0;; colonne &apos;%3&apos;</translation>
    </message>
    <message>
        <source>Could not logon user &apos;%1&apos; (error code &apos;%2&apos;).
Please check your settings in &apos;Tools &gt; Options &gt; Logging&apos;!</source>
        <translation>Impossible de connecter l&apos;utilisateur &apos;%1&apos; (code d&apos;erreur &apos;%2&apos;).
Veuillez vérifier vos paramètres dans &apos;Outils &gt; Options &gt; Journalisation&apos;&#xa0;!</translation>
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
        <translation>Clip Vodec</translation>
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
        <translation>Stockage sur serveur de fichiers VORTENA</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>Imprimante</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnu</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Début</translation>
    </message>
    <message>
        <source>Finished</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abandon</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
<context>
    <name>ExportFormats</name>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;.</source>
        <translation>Format=&apos;%1&apos;&#xa0;; Source=&apos;%2&apos;.</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Target=&apos;%3&apos;.</source>
        <translation>Format=&apos;%1&apos;&#xa0;; Source=&apos;%2&apos;&#xa0;; Destination=&apos;%3&apos;.</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Timestamp=&apos;%4&apos;.%3</source>
        <translation>Format=&apos;%1&apos;&#xa0;; Source=&apos;%2&apos;&#xa0;; Horodatage=&apos;%4&apos;.%3</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Timestamp=&apos;%4&apos;; Target=&apos;%3&apos;.</source>
        <translation>Format=&apos;%1&apos;&#xa0;; Source=&apos;%2&apos;&#xa0;; Horodatage=&apos;%4&apos;&#xa0;; Destination=&apos;%3&apos;.</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Date and time from=&apos;%4&apos;; Date and time to &apos;%5&apos;.%3</source>
        <translation>Format=&apos;%1&apos;&#xa0;; Source=&apos;%2&apos;&#xa0;; Date et heure de début=&apos;%4&apos;&#xa0;; Date et heure de fin &apos;%5&apos;.%3</translation>
    </message>
    <message>
        <source>Format=&apos;%1&apos;; Source=&apos;%2&apos;; Date and time from=&apos;%4&apos;; Date and time to &apos;%5&apos;; Target=&apos;%3&apos;.</source>
        <translation>Format=&apos;%1&apos;&#xa0;; Source=&apos;%2&apos;&#xa0;; Date et heure de début=&apos;%4&apos;&#xa0;; Date et heure de fin &apos;%5&apos;&#xa0;; Destination=&apos;%3&apos;.</translation>
    </message>
    <message>
        <source>&apos;%1%2&apos; to &apos;%1%3&apos;.</source>
        <translation>&apos;%1%2&apos; renommé en &apos;%1%3&apos;.</translation>
    </message>
</context>
<context>
    <name>vo::ActionLog</name>
    <message>
        <source>ActionLog</source>
        <translation>JournalDActions</translation>
    </message>
</context>
<context>
    <name>DefaultIntValidator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Valeur hors de la plage admise.</translation>
    </message>
</context>
<context>
    <name>DefaultUIntValidator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Valeur hors de la plage admise.</translation>
    </message>
</context>
<context>
    <name>DefaultU64Validator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Valeur hors de la plage admise.</translation>
    </message>
</context>
<context>
    <name>DefaultFloatValidator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Valeur hors de la plage admise.</translation>
    </message>
</context>
<context>
    <name>DefaultDoubleValidator</name>
    <message>
        <source>Value out of range.</source>
        <translation>Valeur hors de la plage admise.</translation>
    </message>
</context>
</TS>
