<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About quillmere</source>
        <translation>Über quillmere</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>ActivityCanvas</name>
    <message>
        <source>Currently tracked</source>
        <translation>Derzeit erfasst</translation>
    </message>
</context>
<context>
    <name>ActivityPageHead</name>
    <message>
        <source>Activity</source>
        <translation>Aktivität</translation>
    </message>
    <message>
        <source>What&apos;s been making noise</source>
        <translation>Was zu hören war</translation>
    </message>
    <message>
        <source>Live now</source>
        <translation>Jetzt aktiv</translation>
    </message>
    <message>
        <source>Apps connected</source>
        <translation>Verbundene Apps</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>Profile</translation>
    </message>
    <message>
        <source>Auto-Duck triggers</source>
        <translation>Absenkungsauslöser</translation>
    </message>
    <message>
        <source>Currently tracked</source>
        <translation>Derzeit erfasst</translation>
    </message>
    <message>
        <source>Live snapshot</source>
        <translation>Momentaufnahme</translation>
    </message>
    <message>
        <source>No activity yet.</source>
        <translation>Noch keine Aktivität.</translation>
    </message>
    <message>
        <source>Start an audio app and it&apos;ll show up here in real time.</source>
        <translation>Sobald eine Audio-App startet, erscheint sie hier in Echtzeit.</translation>
    </message>
</context>
<context>
    <name>ActivityRow</name>
    <message>
        <source>live</source>
        <translation>aktiv</translation>
    </message>
    <message>
        <source>idle</source>
        <translation>inaktiv</translation>
    </message>
</context>
<context>
    <name>AddFocusAppCell</name>
    <message>
        <source>Add app</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add an app from your Applications folder</source>
        <translation>Eine App aus dem Anwendungsordner hinzufügen</translation>
    </message>
</context>
<context>
    <name>AddProfileTile</name>
    <message>
        <source>New profile</source>
        <translation>Neues Profil</translation>
    </message>
    <message>
        <source>Capture the current mixer</source>
        <translation>Aktuellen Mixer festhalten</translation>
    </message>
</context>
<context>
    <name>AppCount</name>
    <message numerus="yes">
        <source>%n apps</source>
        <translation>
            <numerusform>%n App</numerusform>
            <numerusform>%n Apps</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AppPicker</name>
    <message>
        <source>Add an app</source>
        <translation>App hinzufügen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter…</source>
        <translation>Filtern …</translation>
    </message>
    <message>
        <source>Browse Applications…</source>
        <translation>Anwendungen durchsuchen …</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>AppPickerList</name>
    <message>
        <source>Apps</source>
        <translation>Apps</translation>
    </message>
</context>
<context>
    <name>AppPickerRow</name>
    <message>
        <source>%1, added</source>
        <translation>%1, hinzugefügt</translation>
    </message>
    <message>
        <source>Added</source>
        <translation>Hinzugefügt</translation>
    </message>
</context>
<context>
    <name>AppRow</name>
    <message>
        <source>Ducked because a call is in progress.</source>
        <translation>Abgesenkt, weil ein Anruf läuft.</translation>
    </message>
    <message>
        <source>Producing audio right now.</source>
        <translation>Gibt gerade Ton aus.</translation>
    </message>
    <message>
        <source>%1 is muted.</source>
        <translation>%1 ist stummgeschaltet.</translation>
    </message>
    <message>
        <source>Unmute</source>
        <translation>Stummschaltung aufheben</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stummschalten</translation>
    </message>
    <message>
        <source>Ducked</source>
        <translation>Abgesenkt</translation>
    </message>
    <message>
        <source>System default</source>
        <translation>Systemstandard</translation>
    </message>
</context>
<context>
    <name>AutoDuckCanvas</name>
    <message>
        <source>Auto-Duck</source>
        <translation>Auto-Absenkung</translation>
    </message>
    <message>
        <source>Let the music get out of the way</source>
        <translation>Damit die Musik Platz macht</translation>
    </message>
    <message>
        <source>When a meeting app activates the microphone, quillmere fades music apps to a low level and restores them when the call ends.</source>
        <translation>Sobald eine Konferenz-App das Mikrofon aktiviert, blendet quillmere Musik-Apps auf eine niedrige Lautstärke ab und stellt sie nach dem Anruf wieder her.</translation>
    </message>
    <message>
        <source>Duck music to</source>
        <translation>Musik absenken auf</translation>
    </message>
    <message>
        <source>Fade duration</source>
        <translation>Blenddauer</translation>
    </message>
    <message>
        <source>Restore delay</source>
        <translation>Wartezeit bis zum Wiederherstellen</translation>
    </message>
    <message>
        <source>Wait this long after a call ends before restoring volume — prevents flicker if you immediately rejoin.</source>
        <translation>So lange nach dem Ende eines Anrufs warten, bevor die Lautstärke wiederhergestellt wird – verhindert ein Hin und Her bei sofortiger Rückkehr.</translation>
    </message>
    <message>
        <source>Triggered by these apps</source>
        <translation>Durch diese Apps ausgelöst</translation>
    </message>
    <message>
        <source>When any of these activate the mic, music ducks.</source>
        <translation>Aktiviert eine davon das Mikrofon, wird die Musik abgesenkt.</translation>
    </message>
    <message>
        <source>Add trigger app</source>
        <translation>Auslöser hinzufügen</translation>
    </message>
    <message>
        <source>Music apps that get ducked</source>
        <translation>Musik-Apps, die abgesenkt werden</translation>
    </message>
    <message>
        <source>These are the apps quillmere fades down. Anything not on this list keeps playing at normal volume.</source>
        <translation>Diese Apps blendet quillmere ab. Alles, was nicht auf dieser Liste steht, spielt in normaler Lautstärke weiter.</translation>
    </message>
    <message>
        <source>Add music app</source>
        <translation>Musik-App hinzufügen</translation>
    </message>
</context>
<context>
    <name>BrowserCompanions</name>
    <message>
        <source>Browser tabs</source>
        <translation>Browser-Tabs</translation>
    </message>
    <message>
        <source>A companion in the browser shows its open tabs in the mixer. Nothing of them leaves this computer.</source>
        <translation>Ein Begleiter im Browser zeigt dessen offene Tabs im Mixer. Nichts davon verlässt diesen Rechner.</translation>
    </message>
</context>
<context>
    <name>DuckAppRow</name>
    <message>
        <source>Disabled defaults</source>
        <translation>Deaktivierte Vorgaben</translation>
    </message>
</context>
<context>
    <name>FocusAppCell</name>
    <message>
        <source>Remove %1 from focus picker</source>
        <translation>%1 aus der Fokus-Auswahl entfernen</translation>
    </message>
    <message>
        <source>Remove from focus picker</source>
        <translation>Aus der Fokus-Auswahl entfernen</translation>
    </message>
</context>
<context>
    <name>FocusAppPicker</name>
    <message>
        <source>Keep this app playing during focus</source>
        <translation>Diese App im Fokus weiterspielen lassen</translation>
    </message>
    <message>
        <source>Click an app icon to keep it playing. Click again to clear. Add any app — it doesn&apos;t have to be running.</source>
        <translation>Ein Klick auf ein App-Symbol lässt die App weiterspielen, ein weiterer hebt die Wahl auf. Jede App lässt sich hinzufügen – sie muss nicht laufen.</translation>
    </message>
</context>
<context>
    <name>FocusCanvas</name>
    <message>
        <source>Focus</source>
        <translation>Fokus</translation>
    </message>
    <message>
        <source>Pomodoro for your audio</source>
        <translation>Pomodoro für den Ton</translation>
    </message>
    <message>
        <source>Run a focus block. quillmere mutes everything except your designated focus app, then restores on break. Optional: keep one app (white noise, lo-fi) playing the whole time.</source>
        <translation>Einen Fokusblock starten: quillmere schaltet alles außer der gewählten Fokus-App stumm und stellt es in der Pause wieder her. Auf Wunsch spielt eine App (weißes Rauschen, Lo-Fi) die ganze Zeit weiter.</translation>
    </message>
    <message>
        <source>Cycle settings</source>
        <translation>Zykluseinstellungen</translation>
    </message>
    <message>
        <source>Focus duration</source>
        <translation>Fokusdauer</translation>
    </message>
    <message>
        <source>Break duration</source>
        <translation>Pausendauer</translation>
    </message>
</context>
<context>
    <name>FocusHero</name>
    <message>
        <source>%1, %2</source>
        <comment>ready, 25:00</comment>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>LaunchAtLoginRow</name>
    <message>
        <source>Launch at login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>quillmere opens silently into the menu bar when you log in.</source>
        <translation>quillmere startet beim Anmelden unauffällig in der Menüleiste.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Mixer</source>
        <translation>Mixer</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>Profile</translation>
    </message>
    <message>
        <source>Activity</source>
        <translation>Aktivität</translation>
    </message>
    <message>
        <source>Auto-Duck</source>
        <translation>Auto-Absenkung</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>Fokus</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>MixerCanvas</name>
    <message>
        <source>Apps</source>
        <translation>Apps</translation>
    </message>
</context>
<context>
    <name>MixerHero</name>
    <message>
        <source>Live mixer</source>
        <translation>Live-Mixer</translation>
    </message>
</context>
<context>
    <name>MixerPageHead</name>
    <message>
        <source>Mystery Sound Finder</source>
        <translation>Geräusch-Detektiv</translation>
    </message>
    <message>
        <source>Catch any app the moment it makes a sound, even if it&apos;s hiding in another Space.</source>
        <translation>Ertappt jede App, sobald sie ein Geräusch macht, auch wenn sie sich in einem anderen Space versteckt.</translation>
    </message>
    <message>
        <source>Auto-Duck on calls</source>
        <translation>Auto-Absenkung bei Anrufen</translation>
    </message>
    <message>
        <source>Music fades when a Zoom or Slack call begins. Restores the moment you hang up.</source>
        <translation>Musik wird leiser, wenn ein Zoom- oder Slack-Anruf beginnt, und kehrt beim Auflegen sofort zurück.</translation>
    </message>
    <message>
        <source>Focus profiles</source>
        <translation>Fokusprofile</translation>
    </message>
    <message>
        <source>Bind volume layouts to macOS Focus modes — Work flips Slack down automatically.</source>
        <translation>Lautstärken an macOS-Fokusmodi binden – „Arbeit“ regelt Slack automatisch herunter.</translation>
    </message>
    <message>
        <source>Apps</source>
        <translation>Apps</translation>
    </message>
    <message>
        <source>Nothing&apos;s playing.</source>
        <translation>Es spielt nichts.</translation>
    </message>
    <message>
        <source>Apps appear here the moment they make any sound.</source>
        <translation>Apps erscheinen hier, sobald sie irgendein Geräusch machen.</translation>
    </message>
</context>
<context>
    <name>MixerPanel</name>
    <message>
        <source>Open quillmere window</source>
        <translation>quillmere-Fenster öffnen</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Now playing</source>
        <translation>Aktuelle Wiedergabe</translation>
    </message>
    <message>
        <source>Quiet right now.</source>
        <translation>Gerade ist es still.</translation>
    </message>
    <message>
        <source>Apps appear here when they make sound.</source>
        <translation>Apps erscheinen hier, sobald sie Ton ausgeben.</translation>
    </message>
    <message>
        <source>Open quillmere</source>
        <translation>quillmere öffnen</translation>
    </message>
    <message>
        <source>Profile: %1</source>
        <translation>Profil: %1</translation>
    </message>
    <message>
        <source>Quit quillmere</source>
        <translation>quillmere beenden</translation>
    </message>
</context>
<context>
    <name>MuteButton</name>
    <message>
        <source>Unmute %1</source>
        <translation>Stummschaltung von %1 aufheben</translation>
    </message>
    <message>
        <source>Mute %1</source>
        <translation>%1 stummschalten</translation>
    </message>
</context>
<context>
    <name>NowPlayingStrip</name>
    <message>
        <source>Now playing</source>
        <translation>Aktuelle Wiedergabe</translation>
    </message>
    <message>
        <source>Previous track</source>
        <translation>Vorheriger Titel</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>Nächster Titel</translation>
    </message>
</context>
<context>
    <name>OnboardingWindow</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Welcome to quillmere</source>
        <translation>Willkommen bei quillmere</translation>
    </message>
</context>
<context>
    <name>OutputCard</name>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Output device: %1</source>
        <translation>Ausgabegerät: %1</translation>
    </message>
    <message>
        <source>Output volume</source>
        <translation>Ausgabelautstärke</translation>
    </message>
</context>
<context>
    <name>OutputPresenter</name>
    <message>
        <source>System Output</source>
        <translation>Systemausgabe</translation>
    </message>
</context>
<context>
    <name>OutputRow</name>
    <message>
        <source>Output device: %1</source>
        <translation>Ausgabegerät: %1</translation>
    </message>
    <message>
        <source>Output volume</source>
        <translation>Ausgabelautstärke</translation>
    </message>
</context>
<context>
    <name>PercentText</name>
    <message>
        <source>%1%</source>
        <extracomment>A percentage; some languages have a space between the number and the sign, which must not break.</extracomment>
        <translation>%1&#xa0;%</translation>
    </message>
</context>
<context>
    <name>PermissionCard</name>
    <message>
        <source>%1: %2</source>
        <comment>Accessibility: Granted</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>PermissionRow</name>
    <message>
        <source>%1: %2</source>
        <comment>Accessibility: Granted</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>PermissionsStep</name>
    <message>
        <source>A couple of optional permissions</source>
        <translation>Einige optionale Berechtigungen</translation>
    </message>
    <message>
        <source>Grant now, or skip and we&apos;ll ask again when you turn on the related feature.</source>
        <translation>Jetzt erteilen oder überspringen – die Frage kommt wieder, sobald die zugehörige Funktion eingeschaltet wird.</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Bedienungshilfen</translation>
    </message>
    <message>
        <source>Required for global keyboard shortcuts (mute Slack from anywhere).</source>
        <translation>Für globale Tastenkürzel erforderlich (Slack von überall stummschalten).</translation>
    </message>
    <message>
        <source>Focus Status</source>
        <translation>Fokusstatus</translation>
    </message>
    <message>
        <source>Lets profiles auto-switch when you change macOS Focus modes.</source>
        <translation>Lässt Profile beim Wechsel des macOS-Fokusmodus automatisch umschalten.</translation>
    </message>
</context>
<context>
    <name>PreferencesCanvas</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>How quillmere behaves</source>
        <translation>Wie sich quillmere verhält</translation>
    </message>
    <message>
        <source>Scroll over an app row to adjust its volume</source>
        <translation>Lautstärke durch Scrollen über einer App-Zeile ändern</translation>
    </message>
    <message>
        <source>Use the trackpad or mouse wheel over any app row to nudge its gain by 0.5%.</source>
        <translation>Mit Touchpad oder Mausrad über einer App-Zeile ihre Lautstärke in Schritten von 0,5&#xa0;% ändern.</translation>
    </message>
    <message>
        <source>Show duck banner during calls</source>
        <translation>Während Anrufen einen Absenkungshinweis anzeigen</translation>
    </message>
    <message>
        <source>Slim banner appears at the top of the menu-bar widget while music is auto-ducked.</source>
        <translation>Oben im Menüleisten-Fenster erscheint ein schmaler Hinweis, solange Musik automatisch abgesenkt ist.</translation>
    </message>
    <message>
        <source>Pause music when headphones disconnect</source>
        <translation>Musik anhalten, wenn Kopfhörer getrennt werden</translation>
    </message>
    <message>
        <source>When AirPods or wired headphones drop, quillmere sends a global pause to all media-playing apps.</source>
        <translation>Wird die Verbindung zu AirPods oder Kabelkopfhörern getrennt, hält quillmere alle Apps an, die Medien abspielen.</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>Berechtigungen</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Bedienungshilfen</translation>
    </message>
    <message>
        <source>For global keyboard shortcuts.</source>
        <translation>Für globale Tastenkürzel.</translation>
    </message>
    <message>
        <source>Focus Status</source>
        <translation>Fokusstatus</translation>
    </message>
    <message>
        <source>For Focus-mode-bound profiles.</source>
        <translation>Für Profile, die an einen Fokusmodus gebunden sind.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Website</source>
        <translation>Website</translation>
    </message>
    <message>
        <source>Send feedback</source>
        <translation>Feedback senden</translation>
    </message>
</context>
<context>
    <name>ProfileEditor</name>
    <message>
        <source>Edit profile</source>
        <translation>Profil bearbeiten</translation>
    </message>
    <message>
        <source>Unsaved changes</source>
        <translation>Nicht gespeichert</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Profile name</source>
        <translation>Profilname</translation>
    </message>
    <message>
        <source>Sync from current mixer</source>
        <translation>Vom Mixer übernehmen</translation>
    </message>
    <message>
        <source>Add app</source>
        <translation>App hinzufügen</translation>
    </message>
    <message>
        <source>Apps in this profile</source>
        <translation>Apps in diesem Profil</translation>
    </message>
    <message>
        <source>This profile is empty.</source>
        <translation>Dieses Profil ist leer.</translation>
    </message>
    <message>
        <source>Sync from the current mixer or add apps individually.</source>
        <translation>Vom aktuellen Mixer übernehmen oder Apps einzeln hinzufügen.</translation>
    </message>
    <message>
        <source>Delete profile</source>
        <translation>Profil löschen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Apply now</source>
        <translation>Jetzt anwenden</translation>
    </message>
</context>
<context>
    <name>ProfileEntryRow</name>
    <message>
        <source>Unmute %1</source>
        <translation>Stummschaltung von %1 aufheben</translation>
    </message>
    <message>
        <source>Mute %1</source>
        <translation>%1 stummschalten</translation>
    </message>
    <message>
        <source>Output for %1</source>
        <translation>Ausgabe für %1</translation>
    </message>
    <message>
        <source>Route to a specific output</source>
        <translation>Auf eine bestimmte Ausgabe leiten</translation>
    </message>
    <message>
        <source>Remove %1 from profile</source>
        <translation>%1 aus dem Profil entfernen</translation>
    </message>
    <message>
        <source>Remove from profile</source>
        <translation>Aus dem Profil entfernen</translation>
    </message>
</context>
<context>
    <name>ProfileList</name>
    <message>
        <source>All profiles</source>
        <translation>Alle Profile</translation>
    </message>
</context>
<context>
    <name>ProfileListHead</name>
    <message>
        <source>All profiles</source>
        <translation>Alle Profile</translation>
    </message>
</context>
<context>
    <name>ProfileNames</name>
    <message>
        <source>Untitled %1</source>
        <translation>Unbenannt %1</translation>
    </message>
</context>
<context>
    <name>ProfileTile</name>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>%1, active</source>
        <translation>%1, aktiv</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Duplizieren</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Aktiv</translation>
    </message>
</context>
<context>
    <name>ProfilesCanvas</name>
    <message>
        <source>Select a profile to edit</source>
        <translation>Ein Profil zum Bearbeiten wählen</translation>
    </message>
    <message>
        <source>or click + New profile to capture the current mixer.</source>
        <translation>oder mit „Neues Profil“ den aktuellen Mixer festhalten.</translation>
    </message>
</context>
<context>
    <name>ProfilesHero</name>
    <message>
        <source>Active profile</source>
        <translation>Aktives Profil</translation>
    </message>
</context>
<context>
    <name>ProgramMenu</name>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>About quillmere</source>
        <translation>Über quillmere</translation>
    </message>
    <message>
        <source>quillmere Window</source>
        <translation>quillmere-Fenster</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
</context>
<context>
    <name>ProgressDots</name>
    <message>
        <source>Step %1 of %2</source>
        <translation>Schritt %1 von %2</translation>
    </message>
</context>
<context>
    <name>RingStatTile</name>
    <message>
        <source>%1: %2</source>
        <comment>Live now: 3</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>RouteButton</name>
    <message>
        <source>Output for %1</source>
        <translation>Ausgabe für %1</translation>
    </message>
    <message>
        <source>Route to a specific output</source>
        <translation>Auf eine bestimmte Ausgabe leiten</translation>
    </message>
</context>
<context>
    <name>ShushIcon</name>
    <message>
        <source>Whisper Mode</source>
        <translation>Flüstermodus</translation>
    </message>
</context>
<context>
    <name>Sidebar</name>
    <message>
        <source>Sections</source>
        <translation>Bereiche</translation>
    </message>
</context>
<context>
    <name>SleepTimerControl</name>
    <message>
        <source>Sleep timer</source>
        <translation>Schlummertimer</translation>
    </message>
    <message>
        <source>Sleep timer — tap to cancel</source>
        <translation>Schlummertimer – antippen zum Abbrechen</translation>
    </message>
</context>
<context>
    <name>TabRow</name>
    <message>
        <source>active</source>
        <translation>aktiv</translation>
    </message>
</context>
<context>
    <name>UpdateBanner</name>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
</context>
<context>
    <name>WelcomeStep</name>
    <message>
        <source>The per-app volume mixer macOS forgot to ship.</source>
        <translation>Der Lautstärkemixer für jede App, den macOS vergessen hat.</translation>
    </message>
    <message>
        <source>Find the app that&apos;s making noise. Auto-duck music when calls start. One slider per app — finally.</source>
        <translation>Die App finden, die Geräusche macht. Musik bei Anrufen automatisch absenken. Ein Regler pro App – endlich.</translation>
    </message>
    <message>
        <source>Mystery Sound Finder</source>
        <translation>Geräusch-Detektiv</translation>
    </message>
    <message>
        <source>Auto-Duck calls</source>
        <translation>Auto-Absenkung</translation>
    </message>
    <message>
        <source>Focus profiles</source>
        <translation>Fokusprofile</translation>
    </message>
</context>
<context>
    <name>WhisperButton</name>
    <message>
        <source>Fades every app down to a whisper. One more tap brings everything back.</source>
        <translation>Blendet jede App auf Flüsterlautstärke ab. Erneutes Antippen bringt alles zurück.</translation>
    </message>
</context>
<context>
    <name>Wordmark</name>
    <message>
        <source>quillmere</source>
        <translation>quillmere</translation>
    </message>
</context>
<context>
    <name>quillmere::AboutPresenter</name>
    <message>
        <source>About quillmere</source>
        <translation>Über quillmere</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>A volume, a mute and an output for every application.</source>
        <translation>Lautstärke, Stummschaltung und Ausgabe für jede Anwendung.</translation>
    </message>
</context>
<context>
    <name>quillmere::AppPickerModel</name>
    <message>
        <source>Running</source>
        <translation>Laufend</translation>
    </message>
    <message>
        <source>Installed</source>
        <translation>Installiert</translation>
    </message>
</context>
<context>
    <name>quillmere::AppPickerPresenter</name>
    <message numerus="yes">
        <source>%n results</source>
        <translation>
            <numerusform>%n Treffer</numerusform>
            <numerusform>%n Treffer</numerusform>
        </translation>
    </message>
    <message>
        <source>Scanning Applications…</source>
        <translation>Anwendungen werden gesucht …</translation>
    </message>
    <message>
        <source>No apps match.</source>
        <translation>Keine passende App.</translation>
    </message>
    <message>
        <source>Add an app</source>
        <translation>App hinzufügen</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Anwendungen</translation>
    </message>
</context>
<context>
    <name>quillmere::AutoDuckCanvasPresenter</name>
    <message>
        <source>%1 ms</source>
        <translation>%1&#xa0;ms</translation>
    </message>
</context>
<context>
    <name>quillmere::BrowserCompanionsPresenter</name>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Set up</source>
        <translation>Einrichten</translation>
    </message>
    <message>
        <source>To load the companion: open %1 in the browser, turn on “Developer mode”, press “Load unpacked” and choose the folder %2.</source>
        <translation>So wird der Begleiter geladen: %1 im Browser öffnen, den „Entwicklermodus“ einschalten, auf „Entpackte Erweiterung laden“ drücken und den Ordner %2 auswählen.</translation>
    </message>
    <message>
        <source>Waits for its companion</source>
        <translation>Wartet auf seinen Begleiter</translation>
    </message>
    <message>
        <source>Not set up</source>
        <translation>Nicht eingerichtet</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Connected, in another version: %1</source>
        <translation>Verbunden, in anderer Version: %1</translation>
    </message>
</context>
<context>
    <name>quillmere::FocusCanvasPresenter</name>
    <message>
        <source>Deep work in progress</source>
        <translation>Konzentriertes Arbeiten</translation>
    </message>
    <message>
        <source>Take a breath</source>
        <translation>Einmal durchatmen</translation>
    </message>
    <message>
        <source>Ready to focus</source>
        <translation>Bereit für den Fokus</translation>
    </message>
    <message>
        <source>Everything&apos;s quiet except your focus app.</source>
        <translation>Alles ist still, bis auf die Fokus-App.</translation>
    </message>
    <message>
        <source>Volumes restored. Stretch, water, breathe.</source>
        <translation>Lautstärken wiederhergestellt. Strecken, trinken, atmen.</translation>
    </message>
    <message>
        <source>Hit start, quillmere takes care of the noise.</source>
        <translation>Einfach starten – um die Geräusche kümmert sich quillmere.</translation>
    </message>
    <message>
        <source>Skip to break</source>
        <translation>Zur Pause springen</translation>
    </message>
    <message>
        <source>Skip to idle</source>
        <translation>Pause beenden</translation>
    </message>
    <message numerus="yes">
        <source>Start %n-minute focus</source>
        <translation>
            <numerusform>%n Minute Fokus starten</numerusform>
            <numerusform>%n Minuten Fokus starten</numerusform>
        </translation>
    </message>
    <message>
        <source>focus</source>
        <translation>Fokus</translation>
    </message>
    <message>
        <source>break</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>ready</source>
        <translation>bereit</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1&#xa0;min</translation>
    </message>
</context>
<context>
    <name>quillmere::FocusCellModel</name>
    <message>
        <source>Selected — click to clear</source>
        <translation>Ausgewählt – klicken zum Aufheben</translation>
    </message>
    <message>
        <source>Keep %1 playing during focus</source>
        <translation>%1 im Fokus weiterspielen lassen</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
</context>
<context>
    <name>quillmere::MainWindowPresenter</name>
    <message numerus="yes">
        <source>%n sources active</source>
        <translation>
            <numerusform>%n Quelle aktiv</numerusform>
            <numerusform>%n Quellen aktiv</numerusform>
        </translation>
    </message>
    <message>
        <source>Ducked — call active</source>
        <translation>Abgesenkt – Anruf aktiv</translation>
    </message>
    <message>
        <source>Update available — v%1</source>
        <translation>Aktualisierung verfügbar – v%1</translation>
    </message>
</context>
<context>
    <name>quillmere::MixerCanvasPresenter</name>
    <message numerus="yes">
        <source>Mixing %n sources.</source>
        <translation>
            <numerusform>%n Quelle im Mix.</numerusform>
            <numerusform>%n Quellen im Mix.</numerusform>
        </translation>
    </message>
    <message>
        <source>Quiet right now.</source>
        <translation>Gerade ist es still.</translation>
    </message>
    <message numerus="yes">
        <source>%n sources</source>
        <translation>
            <numerusform>%n Quelle</numerusform>
            <numerusform>%n Quellen</numerusform>
        </translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>Inaktiv</translation>
    </message>
    <message numerus="yes">
        <source>%n live</source>
        <translation>
            <numerusform>%n aktiv</numerusform>
            <numerusform>%n aktiv</numerusform>
        </translation>
    </message>
    <message>
        <source>Listening</source>
        <translation>Lauscht</translation>
    </message>
    <message>
        <source>Music ducked — a call is active.</source>
        <translation>Musik abgesenkt – ein Anruf ist aktiv.</translation>
    </message>
    <message>
        <source>Open Spotify, Slack, a YouTube tab — apps appear here.</source>
        <translation>Spotify, Slack oder einen YouTube-Tab öffnen – Apps erscheinen hier.</translation>
    </message>
    <message numerus="yes">
        <source>%n apps connected.</source>
        <translation>
            <numerusform>%n App verbunden.</numerusform>
            <numerusform>%n Apps verbunden.</numerusform>
        </translation>
    </message>
    <message>
        <source>Ducking now</source>
        <translation>Senkt jetzt ab</translation>
    </message>
    <message>
        <source>Standing by</source>
        <translation>In Bereitschaft</translation>
    </message>
    <message>
        <source>Profile active</source>
        <translation>Profil aktiv</translation>
    </message>
    <message numerus="yes">
        <source>%n saved</source>
        <translation>
            <numerusform>%n gespeichert</numerusform>
            <numerusform>%n gespeichert</numerusform>
        </translation>
    </message>
    <message>
        <source>Whisper Mode on — tap to restore</source>
        <translation>Flüstermodus an – antippen zum Aufheben</translation>
    </message>
    <message>
        <source>Engage Whisper Mode</source>
        <translation>Flüstermodus einschalten</translation>
    </message>
</context>
<context>
    <name>quillmere::MixerPanelPresenter</name>
    <message>
        <source>Whisper Mode on — tap to restore</source>
        <translation>Flüstermodus an – antippen zum Aufheben</translation>
    </message>
    <message>
        <source>Whisper Mode (one-tap shush)</source>
        <translation>Flüstermodus (Ruhe per Antippen)</translation>
    </message>
    <message numerus="yes">
        <source>%n live</source>
        <translation>
            <numerusform>%n aktiv</numerusform>
            <numerusform>%n aktiv</numerusform>
        </translation>
    </message>
    <message>
        <source>On a call — the call&apos;s own audio can&apos;t be ducked.</source>
        <translation>Anruf aktiv – der Ton des Anrufs selbst lässt sich nicht absenken.</translation>
    </message>
    <message>
        <source>Music ducked while you&apos;re on a call.</source>
        <translation>Musik während des Anrufs abgesenkt.</translation>
    </message>
</context>
<context>
    <name>quillmere::NowPlayingPresenter</name>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>· %1</source>
        <translation>· %1</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
</context>
<context>
    <name>quillmere::PermissionPresenter</name>
    <message>
        <source>Granted</source>
        <translation>Erteilt</translation>
    </message>
    <message>
        <source>Open Settings</source>
        <translation>Einstellungen öffnen</translation>
    </message>
    <message>
        <source>Grant</source>
        <translation>Erteilen</translation>
    </message>
</context>
<context>
    <name>quillmere::PermissionsPresenter</name>
    <message>
        <source>No settings for this were found. It is granted once the desktop&apos;s portal offers global shortcuts.</source>
        <translation>Keine Einstellungen dafür gefunden. Erteilt wird es, sobald das Portal des Desktops globale Tastenkürzel bietet.</translation>
    </message>
    <message>
        <source>No settings for this were found. It is granted once the desktop&apos;s notifications have a do-not-disturb mode.</source>
        <translation>Keine Einstellungen dafür gefunden. Erteilt wird es, sobald die Benachrichtigungen des Desktops einen Nicht-stören-Modus haben.</translation>
    </message>
</context>
<context>
    <name>quillmere::ProfileEditorPresenter</name>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Save changes</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Saved</source>
        <translation>Gespeichert</translation>
    </message>
    <message>
        <source>System default</source>
        <translation>Systemstandard</translation>
    </message>
</context>
<context>
    <name>quillmere::ProfileEntryModel</name>
    <message>
        <source>Unmute</source>
        <translation>Stummschaltung aufheben</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stummschalten</translation>
    </message>
</context>
<context>
    <name>quillmere::ProfilesCanvasPresenter</name>
    <message>
        <source>No profile applied</source>
        <translation>Kein Profil aktiv</translation>
    </message>
    <message>
        <source>Live mixer values are in effect.</source>
        <translation>Es gelten die Mixerwerte.</translation>
    </message>
</context>
<context>
    <name>quillmere::ProfilesPresenter</name>
    <message>
        <source>Default</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Save current as new profile…</source>
        <translation>Als neues Profil speichern …</translation>
    </message>
    <message>
        <source>Open quillmere window…</source>
        <translation>quillmere-Fenster öffnen …</translation>
    </message>
</context>
<context>
    <name>quillmere::SleepTimerPresenter</name>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n Minute</numerusform>
            <numerusform>%n Minuten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::TabListModel</name>
    <message numerus="yes">
        <source>%n tabs</source>
        <translation>
            <numerusform>%n Tab</numerusform>
            <numerusform>%n Tabs</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n tabs open</source>
        <translation>
            <numerusform>%n Tab offen</numerusform>
            <numerusform>%n Tabs offen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>+ %n more</source>
        <translation>
            <numerusform>+ %n weiterer</numerusform>
            <numerusform>+ %n weitere</numerusform>
        </translation>
    </message>
</context>
</TS>
