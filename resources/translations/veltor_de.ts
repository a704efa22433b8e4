<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="keypad.lat-lon.title.latitude">
        <source>Latitude</source>
        <extracomment>Heading of the keypad on which a latitude is typed</extracomment>
        <translation>Breite</translation>
    </message>
    <message id="keypad.lat-lon.title.longitude">
        <source>Longitude</source>
        <extracomment>Heading of the keypad on which a longitude is typed</extracomment>
        <translation>Länge</translation>
    </message>
    <message id="keypad.lat-lon.decimal.spoken">
        <source>decimal point</source>
        <extracomment>Spoken name of the decimal point key</extracomment>
        <translation>Dezimalkomma</translation>
    </message>
    <message id="keypad.lat-lon.degrees.spoken">
        <source>degrees</source>
        <extracomment>Spoken name of the key that closes the degrees and starts the minutes</extracomment>
        <translation>Grad</translation>
    </message>
    <message id="keypad.lat-lon.minutes.spoken">
        <source>minutes</source>
        <extracomment>Spoken name of the key that closes the minutes and starts the seconds</extracomment>
        <translation>Minuten</translation>
    </message>
    <message id="keypad.delete">
        <source>delete</source>
        <extracomment>Spoken name of the key that deletes the last character typed</extracomment>
        <translation>Löschen</translation>
    </message>
    <message id="keypad.lat-lon.north">
        <source>North</source>
        <extracomment>North Button</extracomment>
        <translation>Nord</translation>
    </message>
    <message id="keypad.lat-lon.west">
        <source>West</source>
        <extracomment>West Button</extracomment>
        <translation>West</translation>
    </message>
    <message id="keypad.lat-lon.north.spoken">
        <source>north</source>
        <extracomment>Spoken name of the North key</extracomment>
        <translation>Norden</translation>
    </message>
    <message id="keypad.lat-lon.west.spoken">
        <source>west</source>
        <extracomment>Spoken name of the West key</extracomment>
        <translation>Westen</translation>
    </message>
    <message id="keypad.lat-lon.south">
        <source>South</source>
        <extracomment>South Button</extracomment>
        <translation>Süd</translation>
    </message>
    <message id="keypad.lat-lon.east">
        <source>East</source>
        <extracomment>East Button</extracomment>
        <translation>Ost</translation>
    </message>
    <message id="keypad.lat-lon.south.spoken">
        <source>south</source>
        <extracomment>Spoken name of the South key</extracomment>
        <translation>Süden</translation>
    </message>
    <message id="keypad.lat-lon.east.spoken">
        <source>east</source>
        <extracomment>Spoken name of the East key</extracomment>
        <translation>Osten</translation>
    </message>
    <message id="general.done">
        <source>Done</source>
        <extracomment>Done Button</extracomment>
        <translation>Fertig</translation>
    </message>
    <message id="keypad.veltor.title">
        <source>Locator</source>
        <extracomment>Heading of the locator keypad</extracomment>
        <translation>Locator</translation>
    </message>
    <message id="distance.meters.long">
        <source>%&apos;lld&#xa0;m</source>
        <extracomment>Long Meters Distance</extracomment>
        <translation>%&apos;lld&#xa0;m</translation>
    </message>
    <message id="distance.kilometers.long.fractional">
        <source>%.2f&#xa0;km</source>
        <extracomment>Long Kilometers Distance</extracomment>
        <translation>%.2f&#xa0;km</translation>
    </message>
    <message id="distance.kilometers.long.integral">
        <source>%&apos;lld&#xa0;km</source>
        <extracomment>Long Kilometers Distance</extracomment>
        <translation>%&apos;lld&#xa0;km</translation>
    </message>
    <message id="distance.feet.long">
        <source>%&apos;lld&#xa0;ft</source>
        <extracomment>Long Feet Distance</extracomment>
        <translation>%&apos;lld&#xa0;ft</translation>
    </message>
    <message id="distance.miles.long.fractional">
        <source>%.2f&#xa0;mi</source>
        <extracomment>Long Miles Distance</extracomment>
        <translation>%.2f&#xa0;mi</translation>
    </message>
    <message id="distance.miles.long.integral">
        <source>%&apos;lld&#xa0;mi</source>
        <extracomment>Long Miles Distance</extracomment>
        <translation>%&apos;lld&#xa0;mi</translation>
    </message>
    <message id="map.attribution.default">
        <source>Map tiles: %1</source>
        <extracomment>Credit shown on the map for a tile server that named none; %1 is its host name</extracomment>
        <translation>Kartenkacheln: %1</translation>
    </message>
    <message id="map.zoom-in">
        <source>Zoom in</source>
        <extracomment>Spoken name of the map&apos;s zoom-in button</extracomment>
        <translation>Vergrößern</translation>
    </message>
    <message id="map.zoom-out">
        <source>Zoom out</source>
        <extracomment>Spoken name of the map&apos;s zoom-out button</extracomment>
        <translation>Verkleinern</translation>
    </message>
    <message id="tracking.button.stop">
        <source>Stop tracking</source>
        <extracomment>Text of the tracking button while the position is tracked</extracomment>
        <translation>Verfolgung beenden</translation>
    </message>
    <message id="tracking.button.start">
        <source>Track my position</source>
        <extracomment>Text of the tracking button while the position is not tracked</extracomment>
        <translation>Meine Position verfolgen</translation>
    </message>
    <message id="tracking.button.enabled.accessibility.title">
        <source>Tracking enabled</source>
        <extracomment>Tracking enabled</extracomment>
        <translation>Verfolgung aktiviert</translation>
    </message>
    <message id="tracking.button.disabled.accessibility.title">
        <source>Tracking disabled</source>
        <extracomment>Tracking disabled</extracomment>
        <translation>Verfolgung deaktiviert</translation>
    </message>
    <message id="tracking.button.enabled.accessibility.hint">
        <source>Disables tracking</source>
        <extracomment>Disables tracking</extracomment>
        <translation>Deaktiviert die Verfolgung</translation>
    </message>
    <message id="tracking.button.disabled.accessibility.hint">
        <source>Enables tracking</source>
        <extracomment>Enables tracking</extracomment>
        <translation>Aktiviert die Verfolgung</translation>
    </message>
    <message id="panel.latitude.caption">
        <source>Latitude</source>
        <extracomment>Caption over the latitude read-out</extracomment>
        <translation>Breite</translation>
    </message>
    <message id="panel.longitude.caption">
        <source>Longitude</source>
        <extracomment>Caption over the longitude read-out</extracomment>
        <translation>Länge</translation>
    </message>
    <message id="panel.veltor.caption">
        <source>Locator</source>
        <extracomment>Caption over the grid locator read-out</extracomment>
        <translation>Locator</translation>
    </message>
    <message id="toolbar.accuracy">
        <source>±&#xa0;%1</source>
        <extracomment>Label showing accuracy of tracked location</extracomment>
        <translation>±&#xa0;%1</translation>
    </message>
    <message id="app.name">
        <source>Veltor</source>
        <extracomment>The app&apos;s name, in the window title</extracomment>
        <translation>Veltor</translation>
    </message>
    <message id="tracking.error.disabled.title">
        <source>Location Unavailable</source>
        <extracomment>Tracking Disabled Title</extracomment>
        <translation>Standort nicht verfügbar</translation>
    </message>
    <message id="tracking.error.disabled.message">
        <source>Veltor cannot use your position. Check that a GPS source is connected and that location access is allowed.</source>
        <extracomment>Tracking Disabled Message</extracomment>
        <translation>Veltor kann Ihre Position nicht verwenden. Prüfen Sie, ob eine GPS-Quelle verbunden und der Standortzugriff erlaubt ist.</translation>
    </message>
    <message id="general.ok">
        <source>OK</source>
        <extracomment>Action to dismiss dialog</extracomment>
        <translation>OK</translation>
    </message>
    <message id="settings.error.not-saved">
        <source>Settings cannot be saved to %1. Changes last until Veltor closes.</source>
        <extracomment>Shown when the settings file cannot be written (read-only or full disk)</extracomment>
        <translation>Die Einstellungen können nicht in %1 gespeichert werden. Änderungen bleiben nur bis zum Beenden von Veltor erhalten.</translation>
    </message>
    <message id="component.button.default">
        <source>Button</source>
        <extracomment>Title of a button that was given none</extracomment>
        <translation>Schaltfläche</translation>
    </message>
    <message id="settings.appearance">
        <source>Appearance</source>
        <extracomment>Row and picker title for the appearance of the screens</extracomment>
        <translation>Erscheinungsbild</translation>
    </message>
    <message id="appearance.night.name">
        <source>Night</source>
        <extracomment>Appearance with dark surfaces</extracomment>
        <translation>Nacht</translation>
    </message>
    <message id="appearance.red.name">
        <source>Red night</source>
        <extracomment>Appearance in black and deep red only, to keep night vision</extracomment>
        <translation>Rotlicht</translation>
    </message>
    <message id="appearance.day.name">
        <source>Day</source>
        <extracomment>Appearance with light surfaces</extracomment>
        <translation>Tag</translation>
    </message>
    <message id="settings.coordinate-format">
        <source>Coordinates</source>
        <extracomment>Row and picker title for the latitude and longitude notation</extracomment>
        <translation>Koordinaten</translation>
    </message>
    <message id="settings.distance-format">
        <source>Distance units</source>
        <extracomment>Row and picker title for the units of every distance: accuracy, cell edges, target</extracomment>
        <translation>Entfernungseinheiten</translation>
    </message>
    <message id="format.distance.metric.name">
        <source>Metric</source>
        <extracomment>Metric Format Name</extracomment>
        <translation>Metrisch</translation>
    </message>
    <message id="format.distance.imperial.name">
        <source>Imperial</source>
        <extracomment>Imperial Format Name</extracomment>
        <translation>Angloamerikanisch</translation>
    </message>
    <message id="settings.title">
        <source>Settings</source>
        <extracomment>Title of the settings screen and spoken name of the button that opens it</extracomment>
        <translation>Einstellungen</translation>
    </message>
    <message id="general.back">
        <source>Back</source>
        <extracomment>Button that goes back from a picker to the settings</extracomment>
        <translation>Zurück</translation>
    </message>
    <message id="settings.show-grid">
        <source>Show grid</source>
        <extracomment>Row of the switch that shows or hides the locator grid on the map</extracomment>
        <translation>Gitter anzeigen</translation>
    </message>
    <message id="settings.veltor-format">
        <source>Locator precision</source>
        <extracomment>Row and picker title for the locator precision</extracomment>
        <translation>Locator-Genauigkeit</translation>
    </message>
    <message id="sharesheet.title">
        <source>Share</source>
        <extracomment>Button that opens the share sheet</extracomment>
        <translation>Teilen</translation>
    </message>
    <message id="sharesheet.copy-latitude-longitude">
        <source>Copy Latitude and Longitude</source>
        <extracomment>Action to copy latitude and longitude-formatted string</extracomment>
        <translation>Breite und Länge kopieren</translation>
    </message>
    <message id="sharesheet.copy-veltor">
        <source>Copy Locator</source>
        <extracomment>Action to copy veltor-formatted string</extracomment>
        <translation>Locator kopieren</translation>
    </message>
    <message id="sharesheet.show-in-maps">
        <source>Show in Maps</source>
        <extracomment>Action to show a location in the Maps app</extracomment>
        <translation>In Karten zeigen</translation>
    </message>
    <message id="general.cancel">
        <source>Cancel</source>
        <extracomment>Action to cancel display of the share sheet
----------
Spoken name and tooltip of a keypad&apos;s ✕ button: closes it without keeping what was typed</extracomment>
        <translation>Abbrechen</translation>
    </message>
    <message id="map.accessibility.title">
        <source>Map</source>
        <extracomment>Spoken name of the map</extracomment>
        <translation>Karte</translation>
    </message>
    <message id="map.accessibility.hint">
        <source>Places the point at the centre of the map</source>
        <extracomment>Spoken hint of the map: pressing it places the point where the map is centred</extracomment>
        <translation>Setzt den Punkt in die Mitte der Karte</translation>
    </message>
    <message id="grid-position.north">
        <source>north</source>
        <extracomment>Nearest edge of the locator cell, in the grid position strip</extracomment>
        <translation>Nord</translation>
    </message>
    <message id="grid-position.south">
        <source>south</source>
        <translation>Süd</translation>
    </message>
    <message id="grid-position.east">
        <source>east</source>
        <translation>Ost</translation>
    </message>
    <message id="grid-position.west">
        <source>west</source>
        <translation>West</translation>
    </message>
    <message id="grid-position.or">
        <source> or </source>
        <extracomment>Between the other locators a fix may lie in, when its accuracy reaches over an edge</extracomment>
        <translation> oder </translation>
    </message>
    <message id="grid-position.uncertain">
        <source>%1, or %2 within ±&#xa0;%3</source>
        <extracomment>The fix&apos;s locator, the other locators its accuracy circle reaches into, the accuracy</extracomment>
        <translation>%1, oder %2 innerhalb ±&#xa0;%3</translation>
    </message>
    <message id="grid-position.uncertain-spoken">
        <source>Uncertain: %1, or %2 within plus or minus %3</source>
        <extracomment>Spoken: the fix&apos;s locator, the other locators it may be in, the accuracy</extracomment>
        <translation>Unsicher: %1, oder %2 innerhalb plus minus %3</translation>
    </message>
    <message id="grid-position.edges-spoken">
        <source>Grid position: north edge %1, south edge %2, east edge %3, west edge %4.</source>
        <extracomment>Spoken: the distances to the four edges of the locator cell</extracomment>
        <translation>Position im Feld: Nordrand %1, Südrand %2, Ostrand %3, Westrand %4.</translation>
    </message>
    <message id="grid-position.nearest-pole-spoken">
        <source>Nearest edge %1, at the pole. Nearest corner %2 at %3 degrees, where %4 meet.</source>
        <translation>Nächster Rand %1, am Pol. Nächste Ecke %2 bei %3 Grad, wo %4 zusammentreffen.</translation>
    </message>
    <message id="grid-position.nearest-spoken">
        <source>Nearest edge %1, with %2 beyond. Nearest corner %3 at %4 degrees, where %5 meet.</source>
        <translation>Nächster Rand %1, dahinter %2. Nächste Ecke %3 bei %4 Grad, wo %5 zusammentreffen.</translation>
    </message>
    <message id="settings.grid-position">
        <source>Grid position</source>
        <extracomment>Row of the switch that shows or hides, under the read-outs, how far the edges of the current locator cell are</extracomment>
        <translation>Position im Feld</translation>
    </message>
    <message id="crossing.entering">
        <source>Entering %1</source>
        <extracomment>Spoken when a live fix enters another locator cell; the locator is spelled out</extracomment>
        <translation>Jetzt in %1</translation>
    </message>
    <message id="settings.crossing-alert">
        <source>Crossing alerts</source>
        <extracomment>Row and picker title: at which locator precision entering another cell is announced</extracomment>
        <translation>Feldwechsel-Hinweis</translation>
    </message>
    <message id="crossing-alert.four">
        <source>4 characters</source>
        <extracomment>Crossing alerts when the 4-character locator (the square) changes</extracomment>
        <translation>4 Zeichen</translation>
    </message>
    <message id="crossing-alert.six">
        <source>6 characters</source>
        <extracomment>Crossing alerts when the 6-character locator (the subsquare) changes</extracomment>
        <translation>6 Zeichen</translation>
    </message>
    <message id="crossing-alert.off">
        <source>Off</source>
        <extracomment>No crossing alerts</extracomment>
        <translation>Aus</translation>
    </message>
    <message id="settings.speak-crossings">
        <source>Speak crossings</source>
        <extracomment>Row of the switch that has a crossing alert also spoken (&quot;Entering JN58&quot;)</extracomment>
        <translation>Feldwechsel ansagen</translation>
    </message>
    <message id="target.set">
        <source>Set as Target</source>
        <extracomment>Share sheet action: the current point becomes the target for distance and bearing</extracomment>
        <translation>Als Ziel setzen</translation>
    </message>
    <message id="target.clear">
        <source>Clear Target</source>
        <extracomment>Button that removes the target</extracomment>
        <translation>Ziel entfernen</translation>
    </message>
    <message id="target.path-spoken">
        <source>Target %1: %2, bearing %3 degrees; long path %4, bearing %5 degrees</source>
        <extracomment>Spoken: the target&apos;s locator spelled out, distance and bearing, the long path&apos;s</extracomment>
        <translation>Ziel %1: %2, Richtung %3 Grad; Long Path %4, Richtung %5 Grad</translation>
    </message>
    <message id="proof.save">
        <source>Save Proof</source>
        <extracomment>Share sheet action: saves a picture of the window and a text file proving the position</extracomment>
        <translation>Nachweis speichern</translation>
    </message>
    <message id="proof.saved">
        <source>Proof saved in %1 as %2</source>
        <extracomment>After saving a proof of position: the folder and the file name without extension</extracomment>
        <translation>Nachweis in %1 als %2 gespeichert</translation>
    </message>
    <message id="proof.failed">
        <source>Cannot save the proof in %1</source>
        <extracomment>When a proof of position cannot be written; the folder</extracomment>
        <translation>Der Nachweis kann nicht in %1 gespeichert werden</translation>
    </message>
    <message id="fix.stale" numerus="yes">
        <source>Stale fix: %n&#xa0;s old</source>
        <extracomment>The live fix is older than it should be; its age in whole seconds</extracomment>
        <translation>
            <numerusform>Veraltete Position: %n&#xa0;s alt</numerusform>
            <numerusform>Veraltete Position: %n&#xa0;s alt</numerusform>
        </translation>
    </message>
    <message id="fix.stale-spoken" numerus="yes">
        <source>Stale fix, %n seconds old</source>
        <extracomment>Spoken: the live fix is older than it should be; its age in whole seconds</extracomment>
        <translation>
            <numerusform>Veraltete Position, %n Sekunde alt</numerusform>
            <numerusform>Veraltete Position, %n Sekunden alt</numerusform>
        </translation>
    </message>
    <message id="keypad.veltor.target-title">
        <source>Target Locator</source>
        <extracomment>Heading of the locator keypad when it sets the target</extracomment>
        <translation>Ziel-Locator</translation>
    </message>
    <message id="target.type">
        <source>Type Target Locator</source>
        <extracomment>Share sheet action: opens the locator keypad to type the target</extracomment>
        <translation>Ziel-Locator eingeben</translation>
    </message>
    <message id="receiver.no-fix">
        <source>No fix</source>
        <extracomment>The receiver has lost its position fix; the last point stays shown</extracomment>
        <translation>Keine Position</translation>
    </message>
    <message id="receiver.2d">
        <source>2D fix</source>
        <extracomment>A two-dimensional fix: no height, so the position is weaker</extracomment>
        <translation>2D-Position</translation>
    </message>
    <message id="receiver.3d">
        <source>3D fix</source>
        <extracomment>A three-dimensional fix, with height</extracomment>
        <translation>3D-Position</translation>
    </message>
    <message id="receiver.satellites">
        <source>%1 · %2 of %3 satellites</source>
        <extracomment>The fix, then the satellites it uses out of those in view</extracomment>
        <translation>%1 · %2 von %3 Satelliten</translation>
    </message>
    <message id="receiver.satellites-spoken">
        <source>%1, %2 of %3 satellites</source>
        <extracomment>Spoken: the fix, then the satellites it uses out of those in view</extracomment>
        <translation>%1, %2 von %3 Satelliten</translation>
    </message>
    <message id="receiver.reconnecting">
        <source>GPS source lost · reconnecting…</source>
        <extracomment>The GPS daemon or the network went away; Veltor keeps trying to reach it</extracomment>
        <translation>GPS-Quelle verloren · verbinde neu…</translation>
    </message>
    <message id="receiver.reconnecting-spoken">
        <source>GPS source lost, reconnecting</source>
        <extracomment>Spoken: the GPS daemon or the network went away; Veltor keeps trying to reach it</extracomment>
        <translation>GPS-Quelle verloren, verbinde neu</translation>
    </message>
    <message id="station.title">
        <source>Station</source>
        <extracomment>Settings row and screen: where the GPS comes from and which radio programs get the grid</extracomment>
        <translation>Station</translation>
    </message>
    <message id="station.gps-source">
        <source>GPS Source</source>
        <extracomment>Heading of the choice of GPS source</extracomment>
        <translation>GPS-Quelle</translation>
    </message>
    <message id="station.gps-source.system">
        <source>System Positioning</source>
        <extracomment>GPS source: the operating system&apos;s own positioning service</extracomment>
        <translation>Systemortung</translation>
    </message>
    <message id="station.gps-source.gpsd">
        <source>gpsd</source>
        <extracomment>GPS source: the gpsd daemon (a program name, usually left as it is)</extracomment>
        <translation>gpsd</translation>
    </message>
    <message id="station.address">
        <source>Host:Port</source>
        <extracomment>Label and placeholder of a network address field</extracomment>
        <translation>Host:Port</translation>
    </message>
    <message id="station.wsjtx">
        <source>Send Grid to WSJT-X</source>
        <extracomment>Switch: send the live 6-character locator to WSJT-X</extracomment>
        <translation>Locator an WSJT-X senden</translation>
    </message>
    <message id="station.js8call">
        <source>Send Grid to JS8Call</source>
        <extracomment>Switch: send the live 6-character locator to JS8Call</extracomment>
        <translation>Locator an JS8Call senden</translation>
    </message>
    <message id="station.live-only">
        <source>The grid is sent only while tracking live, each time it changes.</source>
        <extracomment>Under the switches: when the grid is sent</extracomment>
        <translation>Der Locator wird nur bei Live-Verfolgung gesendet, jedes Mal wenn er sich ändert.</translation>
    </message>
    <message id="station.gpsd-address-spoken">
        <source>gpsd address</source>
        <extracomment>Spoken name of the gpsd address field</extracomment>
        <translation>gpsd-Adresse</translation>
    </message>
    <message id="station.wsjtx-address-spoken">
        <source>WSJT-X address</source>
        <extracomment>Spoken name of the WSJT-X address field</extracomment>
        <translation>WSJT-X-Adresse</translation>
    </message>
    <message id="station.js8call-address-spoken">
        <source>JS8Call address</source>
        <extracomment>Spoken name of the JS8Call address field</extracomment>
        <translation>JS8Call-Adresse</translation>
    </message>
    <message id="settings.address.error.form">
        <source>Write the address as host:port, with an IPv6 address in brackets.</source>
        <extracomment>Under an address field of the settings when it is not HOST:PORT</extracomment>
        <translation>Schreiben Sie die Adresse als Host:Port, eine IPv6-Adresse in eckigen Klammern.</translation>
    </message>
    <message id="settings.address.error.port">
        <source>The port must be a number from 1 to 65535.</source>
        <extracomment>Under an address field of the settings when the port is not a port number</extracomment>
        <translation>Der Port muss eine Zahl von 1 bis 65535 sein.</translation>
    </message>
    <message id="settings.address.error.host">
        <source>The host must be an IP address or a host name.</source>
        <extracomment>Under an address field of the settings when the part before the port is no host</extracomment>
        <translation>Der Host muss eine IP-Adresse oder ein Hostname sein.</translation>
    </message>
    <message id="map-source.mbtiles-failed.title">
        <source>Map File Unavailable</source>
        <extracomment>Title of the message when the chosen map file cannot be used</extracomment>
        <translation>Kartendatei nicht verfügbar</translation>
    </message>
    <message id="map-source.mbtiles-failed.message">
        <source>%1 The offline basemap is shown instead.</source>
        <extracomment>The reason a map file cannot be used, then what the map shows instead</extracomment>
        <translation>%1 Stattdessen wird die Offline-Grundkarte angezeigt.</translation>
    </message>
    <message id="keep-area.title">
        <source>Keep Area Offline</source>
        <extracomment>Title of the screen that keeps an area of the online map for use without a network, and of the share sheet&apos;s button that opens it</extracomment>
        <translation>Bereich offline speichern</translation>
    </message>
    <message id="map-source.offline">
        <source>Offline Basemap</source>
        <extracomment>Map source: the map built into the app, for use without a network</extracomment>
        <translation>Offline-Grundkarte</translation>
    </message>
    <message id="map-source.openstreetmap">
        <source>OpenStreetMap</source>
        <extracomment>Map source (a proper name)</extracomment>
        <translation>OpenStreetMap</translation>
    </message>
    <message id="map-source.opentopomap">
        <source>OpenTopoMap</source>
        <extracomment>Map source with contour lines and hill shading (a proper name)</extracomment>
        <translation>OpenTopoMap</translation>
    </message>
    <message id="map-source.mbtiles">
        <source>MBTiles File</source>
        <extracomment>Map source: a map file in the MBTiles format on this device</extracomment>
        <translation>MBTiles-Datei</translation>
    </message>
    <message id="map-source.custom">
        <source>Custom Tile Server</source>
        <extracomment>Map source: a tile server given by its address template</extracomment>
        <translation>Eigener Kachelserver</translation>
    </message>
    <message id="mbtiles.missing">
        <source>There is no file %1.</source>
        <extracomment>A map file the user named is not there; %1 is its path</extracomment>
        <translation>Die Datei %1 existiert nicht.</translation>
    </message>
    <message id="mbtiles.not-mbtiles">
        <source>%1 is not an MBTiles file.</source>
        <extracomment>A file the user named as a map is something else; %1 is its path</extracomment>
        <translation>%1 ist keine MBTiles-Datei.</translation>
    </message>
    <message id="mbtiles.vector">
        <source>%1 holds vector tiles; only MBTiles files of PNG, JPEG or WebP images can be shown.</source>
        <extracomment>%1 is the path of a map file whose tiles are vector data, which the app cannot draw</extracomment>
        <translation>%1 enthält Vektorkacheln; nur MBTiles-Dateien mit PNG-, JPEG- oder WebP-Bildern können angezeigt werden.</translation>
    </message>
    <message id="mbtiles.locked">
        <source>%1 is locked by another program.</source>
        <extracomment>%1 is the path of a map file that another program is writing</extracomment>
        <translation>%1 ist durch ein anderes Programm gesperrt.</translation>
    </message>
    <message id="mbtiles.damaged">
        <source>%1 is damaged.</source>
        <extracomment>%1 is the path of a map file whose contents are broken, e.g. cut short</extracomment>
        <translation>%1 ist beschädigt.</translation>
    </message>
    <message id="mbtiles.disk-full">
        <source>%1 could not be written: the disk is full.</source>
        <extracomment>%1 is the path of a map file being written</extracomment>
        <translation>%1 konnte nicht geschrieben werden: Der Datenträger ist voll.</translation>
    </message>
    <message id="mbtiles.read-only">
        <source>%1 could not be written: it is read-only.</source>
        <extracomment>%1 is the path of a map file being written</extracomment>
        <translation>%1 konnte nicht geschrieben werden: Die Datei ist schreibgeschützt.</translation>
    </message>
    <message id="mbtiles.write-failed">
        <source>%1 could not be written: %2</source>
        <extracomment>%1 is the path of a map file, %2 the system&apos;s reason (in English)</extracomment>
        <translation>%1 konnte nicht geschrieben werden: %2</translation>
    </message>
    <message id="mbtiles.read-failed">
        <source>%1 cannot be read: %2</source>
        <extracomment>%1 is the path of a map file, %2 the system&apos;s reason (in English)</extracomment>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message id="mbtiles.no-driver">
        <source>MBTiles files cannot be read: Qt&apos;s SQLite driver is missing.</source>
        <extracomment>The part of Qt that reads SQLite databases is not installed</extracomment>
        <translation>MBTiles-Dateien können nicht gelesen werden: Der SQLite-Treiber von Qt fehlt.</translation>
    </message>
    <message id="map.attribution.places">
        <source>Places © GeoNames (CC BY 4.0)</source>
        <extracomment>Credit shown on the offline map for its place names; GeoNames is a name, CC BY 4.0 a licence</extracomment>
        <translation>Orte © GeoNames (CC BY 4.0)</translation>
    </message>
    <message id="map-download.bad-template">
        <source>The tile server&apos;s address cannot be used for a download.</source>
        <extracomment>Why an area of the map cannot be kept: the tile server address is unusable</extracomment>
        <translation>Die Adresse des Kachelservers kann nicht für einen Download verwendet werden.</translation>
    </message>
    <message id="map-download.bad-zoom">
        <source>Choose zoom levels from %1 to %2, the lower one first.</source>
        <extracomment>Why an area of the map cannot be kept; %1 and %2 are the lowest and highest zoom levels there are</extracomment>
        <translation>Wählen Sie Zoomstufen von %1 bis %2, die niedrigere zuerst.</translation>
    </message>
    <message id="map-download.bad-area">
        <source>Choose an area on the map to keep.</source>
        <extracomment>Why an area of the map cannot be kept: it has no size or lies off the map</extracomment>
        <translation>Wählen Sie auf der Karte einen Bereich zum Speichern.</translation>
    </message>
    <message id="map-download.zoom-forbidden">
        <source>This map&apos;s server allows keeping zoom levels up to %1 only: its usage policy forbids bulk downloads of closer ones.</source>
        <extracomment>Why an area of the map cannot be kept; %1 is the highest zoom level the map&apos;s server lets apps download</extracomment>
        <translation>Der Server dieser Karte erlaubt das Speichern nur bis Zoomstufe %1: Seine Nutzungsrichtlinien verbieten Massendownloads höherer Stufen.</translation>
    </message>
    <message id="map-download.too-many">
        <source>That is %L1 tiles; this map&apos;s server allows at most %L2 in one download. Choose a smaller area or fewer zoom levels.</source>
        <extracomment>Why an area of the map cannot be kept; %L1 is the number of map tiles it needs, %L2 the most the map&apos;s server allows in one download</extracomment>
        <translation>Das sind %L1 Kacheln; der Server dieser Karte erlaubt höchstens %L2 pro Download. Wählen Sie einen kleineren Bereich oder weniger Zoomstufen.</translation>
    </message>
    <message id="map-download.no-job">
        <source>%1 holds no download to continue.</source>
        <extracomment>%1 is the path of a map file that was not made by a download in the app</extracomment>
        <translation>%1 enthält keinen Download, der fortgesetzt werden kann.</translation>
    </message>
    <message id="map-download.busy">
        <source>A download is already running.</source>
        <extracomment>A second download of map tiles was asked for while one runs</extracomment>
        <translation>Es läuft bereits ein Download.</translation>
    </message>
    <message id="map-download.other-map">
        <source>%1 already holds another map; choose another file.</source>
        <extracomment>%1 is the path of a map file chosen for a download that holds some other map</extracomment>
        <translation>%1 enthält bereits eine andere Karte; wählen Sie eine andere Datei.</translation>
    </message>
    <message id="map-download.complete" numerus="yes">
        <source>Kept %n tile(s) for use without a network.</source>
        <extracomment>A download of map tiles for use without a network ended well; %n is the number of tiles</extracomment>
        <translation>
            <numerusform>%n Kachel zur Nutzung ohne Netzwerk gespeichert.</numerusform>
            <numerusform>%n Kacheln zur Nutzung ohne Netzwerk gespeichert.</numerusform>
        </translation>
    </message>
    <message id="map-download.incomplete" numerus="yes">
        <source>%n tile(s) could not be fetched. Start the download again later to fetch them.</source>
        <extracomment>A download of map tiles ended with some missing; %n is how many</extracomment>
        <translation>
            <numerusform>%n Kachel konnte nicht abgerufen werden. Starten Sie den Download später erneut, um sie abzurufen.</numerusform>
            <numerusform>%n Kacheln konnten nicht abgerufen werden. Starten Sie den Download später erneut, um sie abzurufen.</numerusform>
        </translation>
    </message>
    <message id="map-download.cancelled">
        <source>Download stopped. Start it again to continue where it left off.</source>
        <extracomment>A download of map tiles was stopped by the user</extracomment>
        <translation>Download angehalten. Starten Sie ihn erneut, um dort fortzufahren, wo er aufgehört hat.</translation>
    </message>
    <message id="map-download.write-failed">
        <source>%1 The download stopped; the tiles kept until then are safe.</source>
        <extracomment>%1 says why a map file could not be written, e.g. a full disk</extracomment>
        <translation>%1 Der Download wurde angehalten; die bis dahin gespeicherten Kacheln bleiben erhalten.</translation>
    </message>
    <message id="keep-area.visible">
        <source>Visible Area</source>
        <extracomment>Keep the part of the map on the screen</extracomment>
        <translation>Sichtbarer Bereich</translation>
    </message>
    <message id="keep-area.radius">
        <source>%L1&#xa0;km Around the Point</source>
        <extracomment>Keep the map within this many kilometres of the point</extracomment>
        <translation>%L1&#xa0;km um den Punkt</translation>
    </message>
    <message id="keep-area.step-down">
        <source>%1, one level lower</source>
        <extracomment>Spoken: the button that lowers the first or the last zoom level by one</extracomment>
        <translation>%1, eine Stufe niedriger</translation>
    </message>
    <message id="keep-area.step-up">
        <source>%1, one level higher</source>
        <extracomment>Spoken: the button that raises the first or the last zoom level by one</extracomment>
        <translation>%1, eine Stufe höher</translation>
    </message>
    <message id="keep-area.from">
        <source>First level</source>
        <extracomment>The first zoom level kept</extracomment>
        <translation>Erste Stufe</translation>
    </message>
    <message id="keep-area.to">
        <source>Last level</source>
        <extracomment>The last zoom level kept</extracomment>
        <translation>Letzte Stufe</translation>
    </message>
    <message id="keep-area.start">
        <source>Keep Area</source>
        <extracomment>Button that starts the download</extracomment>
        <translation>Bereich speichern</translation>
    </message>
    <message id="keep-area.resume">
        <source>Resume Last Download</source>
        <extracomment>Button that continues a download that was cut short</extracomment>
        <translation>Letzten Download fortsetzen</translation>
    </message>
    <message id="keep-area.cancel">
        <source>Stop</source>
        <extracomment>Button that stops the download, keeping what arrived</extracomment>
        <translation>Anhalten</translation>
    </message>
    <message id="keep-area.close">
        <source>Close</source>
        <extracomment>Button that closes the screen</extracomment>
        <translation>Schließen</translation>
    </message>
    <message id="keep-area.zoom">
        <source>Zoom levels %1 to %2</source>
        <extracomment>The zoom levels kept, first and last (0 is the whole world, 16 shows streets)</extracomment>
        <translation>Zoomstufen %1 bis %2</translation>
    </message>
    <message id="keep-area.name">
        <source>Area at %1</source>
        <extracomment>Name of a kept area, after the locator of the point it was kept around</extracomment>
        <translation>Bereich um %1</translation>
    </message>
    <message id="keep-area.plan">
        <source>%1 tiles, about %2&#xa0;MB</source>
        <extracomment>What a download would take: tiles, and megabytes with one decimal</extracomment>
        <translation>%1 Kacheln, etwa %2&#xa0;MB</translation>
    </message>
    <message id="keep-area.needs-online">
        <source>Choose OpenStreetMap, OpenTopoMap or your own tile server under Settings › Map source to keep an area of it. The offline basemap and map files need no download.</source>
        <extracomment>On the keep-area screen when the map is not drawn from the network</extracomment>
        <translation>Wählen Sie unter Einstellungen › Kartenquelle OpenStreetMap, OpenTopoMap oder einen eigenen Kachelserver, um davon einen Bereich zu speichern. Die Offline-Grundkarte und Kartendateien brauchen keinen Download.</translation>
    </message>
    <message id="keep-area.policy">
        <source>%1 allows keeping only small areas: zoom levels up to %2 and %3 tiles at a time.</source>
        <extracomment>The service&apos;s own rule for downloads; %1 its name, %2 a zoom level, %3 a tile count</extracomment>
        <translation>%1 erlaubt nur das Speichern kleiner Bereiche: Zoomstufen bis %2 und %3 Kacheln auf einmal.</translation>
    </message>
    <message id="keep-area.progress">
        <source>%1 of %2 tiles</source>
        <extracomment>Download progress: tiles kept so far of all of them</extracomment>
        <translation>%1 von %2 Kacheln</translation>
    </message>
    <message id="keep-area.progress-failed">
        <source>%1 · %2 failed</source>
        <extracomment>Added to the progress: tiles the server did not give</extracomment>
        <translation>%1 · %2 fehlgeschlagen</translation>
    </message>
    <message id="keep-area.done">
        <source>%1 The map now shows the kept area, with the basemap around it; Settings › Map source goes back to the online map.</source>
        <extracomment>After a finished download, which the map then shows</extracomment>
        <translation>%1 Die Karte zeigt jetzt den gespeicherten Bereich, umgeben von der Grundkarte; unter Einstellungen › Kartenquelle kehren Sie zur Online-Karte zurück.</translation>
    </message>
    <message id="settings.map">
        <source>Map source</source>
        <extracomment>Settings row and picker: where the map&apos;s tiles come from</extracomment>
        <translation>Kartenquelle</translation>
    </message>
    <message id="map-source.mbtiles-path">
        <source>MBTiles file path</source>
        <extracomment>Field for the path of a map file in the MBTiles format</extracomment>
        <translation>Pfad der MBTiles-Datei</translation>
    </message>
    <message id="map-source.template">
        <source>https://server/{z}/{x}/{y}.png</source>
        <extracomment>Field for a tile server&apos;s address template; {z}, {x} and {y} stand as they are</extracomment>
        <translation>https://server/{z}/{x}/{y}.png</translation>
    </message>
    <message id="map-source.attribution">
        <source>Credit shown on the map</source>
        <extracomment>Field for the credit a tile server asks to be shown on the map</extracomment>
        <translation>Quellenangabe auf der Karte</translation>
    </message>
    <message id="map-source.note.offline">
        <source>Coastlines, borders, lakes, rivers and places, with no network at all.</source>
        <extracomment>Under the map sources when the built-in map is chosen</extracomment>
        <translation>Küstenlinien, Grenzen, Seen, Flüsse und Orte – ganz ohne Netzwerk.</translation>
    </message>
    <message id="map-source.note.online">
        <source>Needs a network; tiles seen once stay for offline use. %1. Keep an area from the share sheet before you go: up to zoom 16 and 3,000 tiles, as the service asks.</source>
        <extracomment>Under the map sources when a public tile service is chosen; %1 is its credit</extracomment>
        <translation>Benötigt ein Netzwerk; einmal angezeigte Kacheln bleiben offline verfügbar. %1. Speichern Sie vor dem Aufbruch über „Teilen“ einen Bereich: bis Zoomstufe 16 und 3.000 Kacheln, wie vom Dienst verlangt.</translation>
    </message>
    <message id="map-source.note.mbtiles">
        <source>Drawn from the file; the offline basemap fills what the file does not hold.</source>
        <extracomment>Under the map sources when a map file is chosen</extracomment>
        <translation>Aus der Datei gezeichnet; die Offline-Grundkarte ergänzt, was die Datei nicht enthält.</translation>
    </message>
    <message id="map-source.note.custom">
        <source>Needs a network; tiles seen once stay for offline use. %1.</source>
        <extracomment>Under the map sources when the user&apos;s own tile server is chosen; %1 is its credit</extracomment>
        <translation>Benötigt ein Netzwerk; einmal angezeigte Kacheln bleiben offline verfügbar. %1.</translation>
    </message>
    <message id="map-source.mbtiles-needed">
        <source>Enter the path of an MBTiles file, then press Enter.</source>
        <extracomment>Under the MBTiles path field when that source is tapped before a file is given</extracomment>
        <translation>Geben Sie den Pfad einer MBTiles-Datei ein und drücken Sie dann die Eingabetaste.</translation>
    </message>
    <message id="map-source.template-needed">
        <source>Enter the server&apos;s tile address with {z}, {x} and {y}, then press Enter.</source>
        <extracomment>Under the URL template field when that source is tapped before a template is given</extracomment>
        <translation>Geben Sie die Kacheladresse des Servers mit {z}, {x} und {y} ein und drücken Sie dann die Eingabetaste.</translation>
    </message>
    <message id="map-source.template-error">
        <source>A tile address starts with http:// or https:// and holds {z}, {x} and {y}.</source>
        <extracomment>Under the URL template field when the text is no tile address</extracomment>
        <translation>Eine Kacheladresse beginnt mit http:// oder https:// und enthält {z}, {x} und {y}.</translation>
    </message>
    <message id="receiver.waiting">
        <source>Waiting for a position fix…</source>
        <extracomment>Tracking has begun; no position has come from the GPS yet</extracomment>
        <translation>Warte auf eine Position…</translation>
    </message>
    <message id="receiver.waiting-spoken">
        <source>Waiting for a position fix</source>
        <extracomment>Spoken: tracking has begun; no position has come from the GPS yet</extracomment>
        <translation>Warte auf eine Position</translation>
    </message>
    <message id="receiver.no-fix-yet">
        <source>No fix yet</source>
        <extracomment>The receiver is talking but has not found its position yet (a cold start)</extracomment>
        <translation>Noch keine Position</translation>
    </message>
    <message id="receiver.fix">
        <source>Fix</source>
        <extracomment>The receiver has a position fix and does not say whether 2D or 3D</extracomment>
        <translation>Position</translation>
    </message>
    <message id="gps.error.gpsd-silent">
        <source>gpsd at %1 has sent no reports for %2&#xa0;s.</source>
        <extracomment>Tracking ended: gpsd is reachable but says nothing of a receiver; %1 HOST:PORT, %2 seconds</extracomment>
        <translation>gpsd unter %1 hat seit %2&#xa0;s nichts gemeldet.</translation>
    </message>
    <message id="gps.error.gpsd-gone">
        <source>gpsd at %1 has been gone for %2&#xa0;s.</source>
        <extracomment>Tracking ended: gpsd went away and did not come back; %1 HOST:PORT, %2 seconds</extracomment>
        <translation>gpsd unter %1 ist seit %2&#xa0;s nicht erreichbar.</translation>
    </message>
    <message id="gps.error.gpsd-connect">
        <source>Cannot connect to gpsd at %1 within %2&#xa0;s.</source>
        <extracomment>Tracking ended: gpsd could not be reached; %1 HOST:PORT, %2 seconds</extracomment>
        <translation>Keine Verbindung zu gpsd unter %1 innerhalb von %2&#xa0;s.</translation>
    </message>
    <message id="gps.error.no-fix">
        <source>No position fix for %1&#xa0;min: tracking has stopped.</source>
        <extracomment>Tracking ended: the receiver talked but found no position for this long; %1 minutes</extracomment>
        <translation>Seit %1&#xa0;min keine Position: Verfolgung beendet.</translation>
    </message>
    <message id="gps.error.device-open">
        <source>Cannot open the GPS device %1: %2.</source>
        <extracomment>Tracking ended: the serial GPS receiver cannot be opened; %1 its device, %2 the reason</extracomment>
        <translation>Das GPS-Gerät %1 lässt sich nicht öffnen: %2.</translation>
    </message>
    <message id="gps.error.device-gone">
        <source>The GPS device %1 was disconnected.</source>
        <extracomment>Tracking ended: the serial GPS receiver was unplugged; %1 its device</extracomment>
        <translation>Das GPS-Gerät %1 wurde getrennt.</translation>
    </message>
    <message id="gps.error.device-failed">
        <source>The GPS device %1 failed: %2.</source>
        <extracomment>Tracking ended: the serial GPS receiver failed; %1 its device, %2 why</extracomment>
        <translation>Das GPS-Gerät %1 meldet einen Fehler: %2.</translation>
    </message>
    <message id="gps.error.tcp-closed">
        <source>The GPS source %1 closed the connection.</source>
        <extracomment>Tracking ended: the NMEA stream over the network was closed by its sender; %1 HOST:PORT</extracomment>
        <translation>Die GPS-Quelle %1 hat die Verbindung beendet.</translation>
    </message>
    <message id="gps.error.tcp-connect">
        <source>Cannot connect to the GPS source %1: %2.</source>
        <extracomment>Tracking ended: the NMEA stream cannot be reached; %1 HOST:PORT, %2 why</extracomment>
        <translation>Keine Verbindung zur GPS-Quelle %1: %2.</translation>
    </message>
    <message id="gps.error.tcp-failed">
        <source>The connection to the GPS source %1 failed: %2.</source>
        <extracomment>Tracking ended: the NMEA stream&apos;s connection broke; %1 HOST:PORT, %2 why</extracomment>
        <translation>Die Verbindung zur GPS-Quelle %1 ist abgebrochen: %2.</translation>
    </message>
    <message id="gps.error.log-folder">
        <source>Cannot open the NMEA log %1: it is a folder.</source>
        <extracomment>Tracking ended: the NMEA log to replay is a folder; %1 its path</extracomment>
        <translation>Das NMEA-Protokoll %1 lässt sich nicht öffnen: Es ist ein Ordner.</translation>
    </message>
    <message id="gps.error.log-open">
        <source>Cannot open the NMEA log %1: %2.</source>
        <extracomment>Tracking ended: the NMEA log to replay cannot be read; %1 its path, %2 why</extracomment>
        <translation>Das NMEA-Protokoll %1 lässt sich nicht öffnen: %2.</translation>
    </message>
    <message id="gps.error.log-ended">
        <source>The NMEA log %1 has ended.</source>
        <extracomment>Tracking ended: the recorded NMEA log has been replayed to its end; %1 its path</extracomment>
        <translation>Das NMEA-Protokoll %1 ist zu Ende.</translation>
    </message>
    <message id="gps.error.connect-timeout">
        <source>Cannot connect to the GPS source %1 within %2&#xa0;s.</source>
        <extracomment>Tracking ended: the NMEA stream could not be reached in time; %1 HOST:PORT, %2 seconds</extracomment>
        <translation>Keine Verbindung zur GPS-Quelle %1 innerhalb von %2&#xa0;s.</translation>
    </message>
    <message id="gps.error.not-nmea">
        <source>The GPS source %1 sends no NMEA data.</source>
        <extracomment>Tracking ended: data arrives, but none of it is NMEA; %1 the GPS source</extracomment>
        <translation>Die GPS-Quelle %1 sendet keine NMEA-Daten.</translation>
    </message>
    <message id="gps.error.silent">
        <source>The GPS source %1 has sent nothing for %2&#xa0;s.</source>
        <extracomment>Tracking ended: the GPS source has fallen silent; %1 the source, %2 seconds</extracomment>
        <translation>Die GPS-Quelle %1 hat seit %2&#xa0;s nichts gesendet.</translation>
    </message>
    <message id="gps.error.system-access">
        <source>The system positioning service refused access to the position.</source>
        <extracomment>Tracking ended: the desktop&apos;s location service refused Veltor</extracomment>
        <translation>Der Ortungsdienst des Systems verweigert den Zugriff auf die Position.</translation>
    </message>
    <message id="gps.error.system-closed">
        <source>The system positioning service has closed.</source>
        <extracomment>Tracking ended: the desktop&apos;s location service went away</extracomment>
        <translation>Der Ortungsdienst des Systems wurde beendet.</translation>
    </message>
    <message id="gps.error.system-no-fix">
        <source>The system positioning service has no position fix.</source>
        <extracomment>Tracking ended: the desktop&apos;s location service found no position</extracomment>
        <translation>Der Ortungsdienst des Systems findet keine Position.</translation>
    </message>
    <message id="gps.error.system-failed">
        <source>The system positioning service failed.</source>
        <extracomment>Tracking ended: the desktop&apos;s location service failed for a reason it does not give</extracomment>
        <translation>Der Ortungsdienst des Systems ist fehlgeschlagen.</translation>
    </message>
    <message id="gps.error.no-source">
        <source>No positioning source is available.</source>
        <extracomment>Tracking ended: there is neither a GPS source nor a desktop location service</extracomment>
        <translation>Keine Ortungsquelle verfügbar.</translation>
    </message>
    <message id="station.fix-wait">
        <source>Wait for a Fix</source>
        <extracomment>Heading of the choice of how long tracking waits for a receiver without a fix</extracomment>
        <translation>Auf eine Position warten</translation>
    </message>
    <message id="station.fix-wait.5min">
        <source>5 Minutes</source>
        <extracomment>How long tracking waits for a fix: five minutes</extracomment>
        <translation>5 Minuten</translation>
    </message>
    <message id="station.fix-wait.15min">
        <source>15 Minutes</source>
        <extracomment>How long tracking waits for a fix: a quarter of an hour</extracomment>
        <translation>15 Minuten</translation>
    </message>
    <message id="station.fix-wait.1h">
        <source>1 Hour</source>
        <extracomment>How long tracking waits for a fix: an hour</extracomment>
        <translation>1 Stunde</translation>
    </message>
    <message id="station.fix-wait.unlimited">
        <source>As Long as It Takes</source>
        <extracomment>Tracking waits for a fix for as long as the receiver talks</extracomment>
        <translation>So lange wie nötig</translation>
    </message>
    <message id="field-tools.folded">
        <source>Field tools: %1</source>
        <extracomment>Spoken name of the line that unfolds the field instruments; %1 what it shows folded</extracomment>
        <translation>Feldwerkzeuge: %1</translation>
    </message>
    <message id="field-tools.unfold">
        <source>Unfolds the field tools</source>
        <extracomment>Spoken hint of that line, folded</extracomment>
        <translation>Klappt die Feldwerkzeuge auf</translation>
    </message>
    <message id="field-tools.fold">
        <source>Folds the field tools</source>
        <extracomment>Spoken hint of that line, unfolded</extracomment>
        <translation>Klappt die Feldwerkzeuge zu</translation>
    </message>
    <message id="target.to">
        <source>To %1</source>
        <extracomment>Over the way to the target: the target&apos;s locator</extracomment>
        <translation>Nach %1</translation>
    </message>
    <message id="grid-position.north-letter">
        <source>N</source>
        <extracomment>The compass letter of north, beside the distance to the cell&apos;s north edge</extracomment>
        <translation>N</translation>
    </message>
    <message id="grid-position.south-letter">
        <source>S</source>
        <translation>S</translation>
    </message>
    <message id="grid-position.east-letter">
        <source>E</source>
        <translation>O</translation>
    </message>
    <message id="grid-position.west-letter">
        <source>W</source>
        <translation>W</translation>
    </message>
    <message id="grid-position.edge">
        <source>%1 %2</source>
        <extracomment>An edge&apos;s compass letter and the distance to it, on a side of the cell&apos;s square</extracomment>
        <translation>%1 %2</translation>
    </message>
    <message id="grid-position.corner">
        <source>Corner %1 at %2°</source>
        <extracomment>The nearest corner of the cell: its distance and bearing in degrees</extracomment>
        <translation>Ecke %1 bei %2°</translation>
    </message>
    <message id="grid-position.summary-pole">
        <source>Edge %1, the pole</source>
        <extracomment>Under the cell&apos;s square: the nearest edge, which is a pole</extracomment>
        <translation>Rand %1, der Pol</translation>
    </message>
    <message id="grid-position.summary">
        <source>Edge %1 → %2</source>
        <extracomment>Under the cell&apos;s square: the nearest edge and its distance, the cell beyond</extracomment>
        <translation>Rand %1 → %2</translation>
    </message>
    <message id="grid-position.detail">
        <source>%1 · %2</source>
        <extracomment>Under the cell&apos;s square: the nearest edge with the cell beyond, then the corner</extracomment>
        <translation>%1 · %2</translation>
    </message>
    <message id="target.secondary">
        <source>Long path %1 at %2° · Contest %3&#xa0;km</source>
        <extracomment>Under the target&apos;s distance: the long path&apos;s distance and bearing, then the distance as IARU Region 1 VHF contests score it, in whole kilometres</extracomment>
        <translation>Long Path %1 bei %2° · Contest %3&#xa0;km</translation>
    </message>
    <message id="map.scale-bar">
        <source>Scale bar: %1</source>
        <extracomment>Spoken: the length of the map&apos;s scale bar</extracomment>
        <translation>Maßstab: %1</translation>
    </message>
    <message id="crossing.banner">
        <source>Entering %1</source>
        <extracomment>Banner over the map when a live fix enters another locator cell</extracomment>
        <translation>Jetzt in %1</translation>
    </message>
    <message id="root.banner.close">
        <source>Close message</source>
        <extracomment>Spoken name of the button that closes the message at the top of the window</extracomment>
        <translation>Meldung schließen</translation>
    </message>
    <message id="settings.error.unreadable">
        <source>Part of the settings file %1 could not be read, and those settings are back to their defaults. The file as it was is kept as %2.</source>
        <extracomment>Shown once when the settings file has a part that cannot be read; %1 the file, %2 the copy</extracomment>
        <translation>Ein Teil der Einstellungsdatei %1 war nicht lesbar; diese Einstellungen sind wieder auf ihren Standardwerten. Die Datei, wie sie war, liegt als %2 bereit.</translation>
    </message>
    <message id="settings.error.unreadable-not-kept">
        <source>Part of the settings file %1 could not be read, and those settings are back to their defaults.</source>
        <extracomment>Shown once when the settings file has a part that cannot be read and no copy of it could be made; %1 the file</extracomment>
        <translation>Ein Teil der Einstellungsdatei %1 war nicht lesbar; diese Einstellungen sind wieder auf ihren Standardwerten.</translation>
    </message>
    <message id="settings.address.error.interface">
        <source>Only a multicast group can name a network interface, after a % sign.</source>
        <extracomment>Under an address field of the settings when an interface follows no multicast group</extracomment>
        <translation>Nur eine Multicast-Gruppe kann eine Netzwerkschnittstelle nennen, nach einem %-Zeichen.</translation>
    </message>
    <message id="station.wsjtx.error.unknown-host">
        <source>Cannot listen for WSJT-X on %1: the host name is not known.</source>
        <extracomment>Under the WSJT-X address and in the GPS state line; %1 the address</extracomment>
        <translation>WSJT-X kann auf %1 nicht empfangen werden: Der Hostname ist unbekannt.</translation>
    </message>
    <message id="station.wsjtx.error.no-interface">
        <source>Cannot listen for WSJT-X on %1: this computer has no network interface of that name.</source>
        <extracomment>Under the WSJT-X address and in the GPS state line; %1 the address</extracomment>
        <translation>WSJT-X kann auf %1 nicht empfangen werden: Dieser Rechner hat keine Netzwerkschnittstelle dieses Namens.</translation>
    </message>
    <message id="station.wsjtx.error.in-use">
        <source>Cannot listen for WSJT-X on %1: another program holds the port.</source>
        <extracomment>Under the WSJT-X address and in the GPS state line; %1 the address</extracomment>
        <translation>WSJT-X kann auf %1 nicht empfangen werden: Ein anderes Programm belegt den Port.</translation>
    </message>
    <message id="station.wsjtx.error.other">
        <source>Cannot listen for WSJT-X on %1: %2</source>
        <extracomment>Under the WSJT-X address and in the GPS state line; %1 the address, %2 the system&apos;s reason</extracomment>
        <translation>WSJT-X kann auf %1 nicht empfangen werden: %2</translation>
    </message>
    <message id="station.wsjtx.listening">
        <source>Listening for WSJT-X on %1</source>
        <extracomment>Under the WSJT-X address in the station settings; %1 the address</extracomment>
        <translation>Empfängt WSJT-X auf %1</translation>
    </message>
    <message id="mbtiles.too-slow">
        <source>%1 takes too long to read; it is not a map file Veltor can use.</source>
        <extracomment>%1 is the path of a map file whose reads do not finish in time (e.g. a hostile file)</extracomment>
        <translation>%1 braucht zu lange zum Lesen; es ist keine Kartendatei, die Veltor nutzen kann.</translation>
    </message>
    <message id="map-source.mbtiles-checking">
        <source>Checking the map file…</source>
        <extracomment>Under the MBTiles path field while the file is read before it is used</extracomment>
        <translation>Kartendatei wird geprüft…</translation>
    </message>
    <message id="menu.title">
        <source>Menu</source>
        <extracomment>Spoken name and tooltip of the button that opens the menu of tools</extracomment>
        <translation>Menü</translation>
    </message>
    <message id="menu.section.target">
        <source>Target</source>
        <extracomment>Heading of the menu&apos;s group of target actions</extracomment>
        <translation>Ziel</translation>
    </message>
    <message id="menu.clear-target">
        <source>Clear Target</source>
        <extracomment>Menu action: the target is dropped, and with it the way to it</extracomment>
        <translation>Ziel entfernen</translation>
    </message>
    <message id="menu.section.field">
        <source>In the Field</source>
        <extracomment>Heading of the menu&apos;s group of actions for work in the field</extracomment>
        <translation>Im Gelände</translation>
    </message>
    <message id="menu.section.setup">
        <source>Set-up</source>
        <extracomment>Heading of the menu&apos;s group of set-up actions</extracomment>
        <translation>Einrichtung</translation>
    </message>
    <message id="menu.map-source">
        <source>Map Source</source>
        <extracomment>Menu action: opens the choice of map source</extracomment>
        <translation>Kartenquelle</translation>
    </message>
    <message id="menu.station">
        <source>Station</source>
        <extracomment>Menu action: opens the station settings (GPS source, WSJT-X, JS8Call)</extracomment>
        <translation>Station</translation>
    </message>
    <message id="root.gps-settings">
        <source>GPS Settings</source>
        <extracomment>Button of the message that the position cannot be used: opens the GPS settings</extracomment>
        <translation>GPS-Einstellungen</translation>
    </message>
    <message id="welcome.title">
        <source>Welcome to Veltor</source>
        <extracomment>Title of the card that teaches the first run</extracomment>
        <translation>Willkommen bei Veltor</translation>
    </message>
    <message id="welcome.long-press">
        <source>Press and hold the map to set the point there.</source>
        <extracomment>First-run card: how to set the point on the map</extracomment>
        <translation>Halten Sie den Finger auf die Karte, um den Punkt dorthin zu setzen.</translation>
    </message>
    <message id="welcome.track">
        <source>Track my position follows the GPS and keeps the point on your fix.</source>
        <extracomment>First-run card: what the tracking button does</extracomment>
        <translation>„Meine Position verfolgen“ folgt dem GPS und hält den Punkt auf Ihrer Position.</translation>
    </message>
    <message id="welcome.dismiss">
        <source>Got It</source>
        <extracomment>Button that puts the first-run card away for good</extracomment>
        <translation>Verstanden</translation>
    </message>
    <message id="appearance.automatic.detail">
        <source>Night from civil dusk to dawn at the point</source>
        <extracomment>Under the Automatic appearance: how it chooses between day and night</extracomment>
        <translation>Nachts von der bürgerlichen Abend- bis zur Morgendämmerung am Punkt</translation>
    </message>
    <message id="appearance.automatic.name">
        <source>Automatic</source>
        <extracomment>Appearance that follows the sun: night between civil dusk and dawn, day otherwise</extracomment>
        <translation>Automatisch</translation>
    </message>
    <message id="welcome.menu.toolbar">
        <source>Menu, at the right of the toolbar, holds the target, proofs, offline areas and the settings.</source>
        <extracomment>First-run card, wide window: where the menu of tools is</extracomment>
        <translation>Das Menü rechts in der Werkzeugleiste enthält Ziel, Nachweise, Offline-Gebiete und die Einstellungen.</translation>
    </message>
    <message id="welcome.menu.map">
        <source>Menu, at the top left of the map, holds the target, proofs, offline areas and the settings.</source>
        <extracomment>First-run card, phone: where the menu of tools is</extracomment>
        <translation>Das Menü oben links auf der Karte enthält Ziel, Nachweise, Offline-Gebiete und die Einstellungen.</translation>
    </message>
    <message id="grid-position.folded">
        <source>Edge %1</source>
        <extracomment>Folded field panel, which must fit one line of a phone: the nearest edge and its distance</extracomment>
        <translation>Rand %1</translation>
    </message>
    <message id="target.folded">
        <source>Target %1</source>
        <extracomment>Folded field panel, which must fit one line of a phone: the distance to the target</extracomment>
        <translation>Ziel %1</translation>
    </message>
</context>
</TS>
