<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <message id="keypad.lat-lon.title.latitude">
        <source>Latitude</source>
        <extracomment>Heading of the keypad on which a latitude is typed</extracomment>
        <translation>Latitud</translation>
    </message>
    <message id="keypad.lat-lon.title.longitude">
        <source>Longitude</source>
        <extracomment>Heading of the keypad on which a longitude is typed</extracomment>
        <translation>Longitud</translation>
    </message>
    <message id="keypad.lat-lon.decimal.spoken">
        <source>decimal point</source>
        <extracomment>Spoken name of the decimal point key</extracomment>
        <translation>coma decimal</translation>
    </message>
    <message id="keypad.lat-lon.degrees.spoken">
        <source>degrees</source>
        <extracomment>Spoken name of the key that closes the degrees and starts the minutes</extracomment>
        <translation>grados</translation>
    </message>
    <message id="keypad.lat-lon.minutes.spoken">
        <source>minutes</source>
        <extracomment>Spoken name of the key that closes the minutes and starts the seconds</extracomment>
        <translation>minutos</translation>
    </message>
    <message id="keypad.delete">
        <source>delete</source>
        <extracomment>Spoken name of the key that deletes the last character typed</extracomment>
        <translation>borrar</translation>
    </message>
    <message id="keypad.lat-lon.north">
        <source>North</source>
        <extracomment>North Button</extracomment>
        <translation>Norte</translation>
    </message>
    <message id="keypad.lat-lon.west">
        <source>West</source>
        <extracomment>West Button</extracomment>
        <translation>Oeste</translation>
    </message>
    <message id="keypad.lat-lon.north.spoken">
        <source>north</source>
        <extracomment>Spoken name of the North key</extracomment>
        <translation>norte</translation>
    </message>
    <message id="keypad.lat-lon.west.spoken">
        <source>west</source>
        <extracomment>Spoken name of the West key</extracomment>
        <translation>oeste</translation>
    </message>
    <message id="keypad.lat-lon.south">
        <source>South</source>
        <extracomment>South Button</extracomment>
        <translation>Sur</translation>
    </message>
    <message id="keypad.lat-lon.east">
        <source>East</source>
        <extracomment>East Button</extracomment>
        <translation>Este</translation>
    </message>
    <message id="keypad.lat-lon.south.spoken">
        <source>south</source>
        <extracomment>Spoken name of the South key</extracomment>
        <translation>sur</translation>
    </message>
    <message id="keypad.lat-lon.east.spoken">
        <source>east</source>
        <extracomment>Spoken name of the East key</extracomment>
        <translation>este</translation>
    </message>
    <message id="general.done">
        <source>Done</source>
        <extracomment>Done Button</extracomment>
        <translation>Listo</translation>
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
        <translation>Teselas del mapa: %1</translation>
    </message>
    <message id="map.zoom-in">
        <source>Zoom in</source>
        <extracomment>Spoken name of the map&apos;s zoom-in button</extracomment>
        <translation>Acercar</translation>
    </message>
    <message id="map.zoom-out">
        <source>Zoom out</source>
        <extracomment>Spoken name of the map&apos;s zoom-out button</extracomment>
        <translation>Alejar</translation>
    </message>
    <message id="tracking.button.stop">
        <source>Stop tracking</source>
        <extracomment>Text of the tracking button while the position is tracked</extracomment>
        <translation>Detener seguimiento</translation>
    </message>
    <message id="tracking.button.start">
        <source>Track my position</source>
        <extracomment>Text of the tracking button while the position is not tracked</extracomment>
        <translation>Seguir mi posición</translation>
    </message>
    <message id="tracking.button.enabled.accessibility.title">
        <source>Tracking enabled</source>
        <extracomment>Tracking enabled</extracomment>
        <translation>Seguimiento activado</translation>
    </message>
    <message id="tracking.button.disabled.accessibility.title">
        <source>Tracking disabled</source>
        <extracomment>Tracking disabled</extracomment>
        <translation>Seguimiento desactivado</translation>
    </message>
    <message id="tracking.button.enabled.accessibility.hint">
        <source>Disables tracking</source>
        <extracomment>Disables tracking</extracomment>
        <translation>Desactiva el seguimiento</translation>
    </message>
    <message id="tracking.button.disabled.accessibility.hint">
        <source>Enables tracking</source>
        <extracomment>Enables tracking</extracomment>
        <translation>Activa el seguimiento</translation>
    </message>
    <message id="panel.latitude.caption">
        <source>Latitude</source>
        <extracomment>Caption over the latitude read-out</extracomment>
        <translation>Latitud</translation>
    </message>
    <message id="panel.longitude.caption">
        <source>Longitude</source>
        <extracomment>Caption over the longitude read-out</extracomment>
        <translation>Longitud</translation>
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
        <translation>Ubicación no disponible</translation>
    </message>
    <message id="tracking.error.disabled.message">
        <source>Veltor cannot use your position. Check that a GPS source is connected and that location access is allowed.</source>
        <extracomment>Tracking Disabled Message</extracomment>
        <translation>Veltor no puede usar tu posición. Comprueba que haya una fuente GPS conectada y que el acceso a la ubicación esté permitido.</translation>
    </message>
    <message id="general.ok">
        <source>OK</source>
        <extracomment>Action to dismiss dialog</extracomment>
        <translation>Aceptar</translation>
    </message>
    <message id="settings.error.not-saved">
        <source>Settings cannot be saved to %1. Changes last until Veltor closes.</source>
        <extracomment>Shown when the settings file cannot be written (read-only or full disk)</extracomment>
        <translation>No se puede guardar la configuración en %1. Los cambios se mantendrán hasta que se cierre Veltor.</translation>
    </message>
    <message id="component.button.default">
        <source>Button</source>
        <extracomment>Title of a button that was given none</extracomment>
        <translation>Botón</translation>
    </message>
    <message id="settings.appearance">
        <source>Appearance</source>
        <extracomment>Row and picker title for the appearance of the screens</extracomment>
        <translation>Apariencia</translation>
    </message>
    <message id="appearance.night.name">
        <source>Night</source>
        <extracomment>Appearance with dark surfaces</extracomment>
        <translation>Noche</translation>
    </message>
    <message id="appearance.red.name">
        <source>Red night</source>
        <extracomment>Appearance in black and deep red only, to keep night vision</extracomment>
        <translation>Noche roja</translation>
    </message>
    <message id="appearance.day.name">
        <source>Day</source>
        <extracomment>Appearance with light surfaces</extracomment>
        <translation>Día</translation>
    </message>
    <message id="settings.coordinate-format">
        <source>Coordinates</source>
        <extracomment>Row and picker title for the latitude and longitude notation</extracomment>
        <translation>Coordenadas</translation>
    </message>
    <message id="settings.distance-format">
        <source>Distance units</source>
        <extracomment>Row and picker title for the units of every distance: accuracy, cell edges, target</extracomment>
        <translation>Unidades de distancia</translation>
    </message>
    <message id="format.distance.metric.name">
        <source>Metric</source>
        <extracomment>Metric Format Name</extracomment>
        <translation>Métrico</translation>
    </message>
    <message id="format.distance.imperial.name">
        <source>Imperial</source>
        <extracomment>Imperial Format Name</extracomment>
        <translation>Imperial</translation>
    </message>
    <message id="settings.title">
        <source>Settings</source>
        <extracomment>Title of the settings screen and spoken name of the button that opens it</extracomment>
        <translation>Ajustes</translation>
    </message>
    <message id="general.back">
        <source>Back</source>
        <extracomment>Button that goes back from a picker to the settings</extracomment>
        <translation>Atrás</translation>
    </message>
    <message id="settings.show-grid">
        <source>Show grid</source>
        <extracomment>Row of the switch that shows or hides the locator grid on the map</extracomment>
        <translation>Mostrar cuadrícula</translation>
    </message>
    <message id="settings.veltor-format">
        <source>Locator precision</source>
        <extracomment>Row and picker title for the locator precision</extracomment>
        <translation>Precisión del locator</translation>
    </message>
    <message id="sharesheet.title">
        <source>Share</source>
        <extracomment>Button that opens the share sheet</extracomment>
        <translation>Compartir</translation>
    </message>
    <message id="sharesheet.copy-latitude-longitude">
        <source>Copy Latitude and Longitude</source>
        <extracomment>Action to copy latitude and longitude-formatted string</extracomment>
        <translation>Copiar latitud y longitud</translation>
    </message>
    <message id="sharesheet.copy-veltor">
        <source>Copy Locator</source>
        <extracomment>Action to copy veltor-formatted string</extracomment>
        <translation>Copiar locator</translation>
    </message>
    <message id="sharesheet.show-in-maps">
        <source>Show in Maps</source>
        <extracomment>Action to show a location in the Maps app</extracomment>
        <translation>Mostrar en Mapas</translation>
    </message>
    <message id="general.cancel">
        <source>Cancel</source>
        <extracomment>Action to cancel display of the share sheet
----------
Spoken name and tooltip of a keypad&apos;s ✕ button: closes it without keeping what was typed</extracomment>
        <translation>Cancelar</translation>
    </message>
    <message id="map.accessibility.title">
        <source>Map</source>
        <extracomment>Spoken name of the map</extracomment>
        <translation>Mapa</translation>
    </message>
    <message id="map.accessibility.hint">
        <source>Places the point at the centre of the map</source>
        <extracomment>Spoken hint of the map: pressing it places the point where the map is centred</extracomment>
        <translation>Coloca el punto en el centro del mapa</translation>
    </message>
    <message id="grid-position.north">
        <source>north</source>
        <extracomment>Nearest edge of the locator cell, in the grid position strip</extracomment>
        <translation>norte</translation>
    </message>
    <message id="grid-position.south">
        <source>south</source>
        <translation>sur</translation>
    </message>
    <message id="grid-position.east">
        <source>east</source>
        <translation>este</translation>
    </message>
    <message id="grid-position.west">
        <source>west</source>
        <translation>oeste</translation>
    </message>
    <message id="grid-position.or">
        <source> or </source>
        <extracomment>Between the other locators a fix may lie in, when its accuracy reaches over an edge</extracomment>
        <translation> o </translation>
    </message>
    <message id="grid-position.uncertain">
        <source>%1, or %2 within ±&#xa0;%3</source>
        <extracomment>The fix&apos;s locator, the other locators its accuracy circle reaches into, the accuracy</extracomment>
        <translation>%1, o %2 dentro de ±&#xa0;%3</translation>
    </message>
    <message id="grid-position.uncertain-spoken">
        <source>Uncertain: %1, or %2 within plus or minus %3</source>
        <extracomment>Spoken: the fix&apos;s locator, the other locators it may be in, the accuracy</extracomment>
        <translation>Incierto: %1, o %2 dentro de más o menos %3</translation>
    </message>
    <message id="grid-position.edges-spoken">
        <source>Grid position: north edge %1, south edge %2, east edge %3, west edge %4.</source>
        <extracomment>Spoken: the distances to the four edges of the locator cell</extracomment>
        <translation>Posición en la cuadrícula: borde norte %1, borde sur %2, borde este %3, borde oeste %4.</translation>
    </message>
    <message id="grid-position.nearest-pole-spoken">
        <source>Nearest edge %1, at the pole. Nearest corner %2 at %3 degrees, where %4 meet.</source>
        <translation>Borde más cercano %1, en el polo. Esquina más cercana %2 a %3 grados, donde se unen %4.</translation>
    </message>
    <message id="grid-position.nearest-spoken">
        <source>Nearest edge %1, with %2 beyond. Nearest corner %3 at %4 degrees, where %5 meet.</source>
        <translation>Borde más cercano %1, con %2 al otro lado. Esquina más cercana %3 a %4 grados, donde se unen %5.</translation>
    </message>
    <message id="settings.grid-position">
        <source>Grid position</source>
        <extracomment>Row of the switch that shows or hides, under the read-outs, how far the edges of the current locator cell are</extracomment>
        <translation>Posición en la cuadrícula</translation>
    </message>
    <message id="crossing.entering">
        <source>Entering %1</source>
        <extracomment>Spoken when a live fix enters another locator cell; the locator is spelled out</extracomment>
        <translation>Entrando en %1</translation>
    </message>
    <message id="settings.crossing-alert">
        <source>Crossing alerts</source>
        <extracomment>Row and picker title: at which locator precision entering another cell is announced</extracomment>
        <translation>Avisos de cambio de cuadrícula</translation>
    </message>
    <message id="crossing-alert.four">
        <source>4 characters</source>
        <extracomment>Crossing alerts when the 4-character locator (the square) changes</extracomment>
        <translation>4 caracteres</translation>
    </message>
    <message id="crossing-alert.six">
        <source>6 characters</source>
        <extracomment>Crossing alerts when the 6-character locator (the subsquare) changes</extracomment>
        <translation>6 caracteres</translation>
    </message>
    <message id="crossing-alert.off">
        <source>Off</source>
        <extracomment>No crossing alerts</extracomment>
        <translation>Desactivados</translation>
    </message>
    <message id="settings.speak-crossings">
        <source>Speak crossings</source>
        <extracomment>Row of the switch that has a crossing alert also spoken (&quot;Entering JN58&quot;)</extracomment>
        <translation>Anunciar los cambios de cuadrícula</translation>
    </message>
    <message id="target.set">
        <source>Set as Target</source>
        <extracomment>Share sheet action: the current point becomes the target for distance and bearing</extracomment>
        <translation>Fijar como destino</translation>
    </message>
    <message id="target.clear">
        <source>Clear Target</source>
        <extracomment>Button that removes the target</extracomment>
        <translation>Borrar destino</translation>
    </message>
    <message id="target.path-spoken">
        <source>Target %1: %2, bearing %3 degrees; long path %4, bearing %5 degrees</source>
        <extracomment>Spoken: the target&apos;s locator spelled out, distance and bearing, the long path&apos;s</extracomment>
        <translation>Destino %1: %2, rumbo %3 grados; long path %4, rumbo %5 grados</translation>
    </message>
    <message id="proof.save">
        <source>Save Proof</source>
        <extracomment>Share sheet action: saves a picture of the window and a text file proving the position</extracomment>
        <translation>Guardar prueba</translation>
    </message>
    <message id="proof.saved">
        <source>Proof saved in %1 as %2</source>
        <extracomment>After saving a proof of position: the folder and the file name without extension</extracomment>
        <translation>Prueba guardada en %1 como %2</translation>
    </message>
    <message id="proof.failed">
        <source>Cannot save the proof in %1</source>
        <extracomment>When a proof of position cannot be written; the folder</extracomment>
        <translation>No se puede guardar la prueba en %1</translation>
    </message>
    <message id="fix.stale" numerus="yes">
        <source>Stale fix: %n&#xa0;s old</source>
        <extracomment>The live fix is older than it should be; its age in whole seconds</extracomment>
        <translation>
            <numerusform>Posición antigua: %n&#xa0;s</numerusform>
            <numerusform>Posición antigua: %n&#xa0;s</numerusform>
        </translation>
    </message>
    <message id="fix.stale-spoken" numerus="yes">
        <source>Stale fix, %n seconds old</source>
        <extracomment>Spoken: the live fix is older than it should be; its age in whole seconds</extracomment>
        <translation>
            <numerusform>Posición antigua, de hace %n segundo</numerusform>
            <numerusform>Posición antigua, de hace %n segundos</numerusform>
        </translation>
    </message>
    <message id="keypad.veltor.target-title">
        <source>Target Locator</source>
        <extracomment>Heading of the locator keypad when it sets the target</extracomment>
        <translation>Locator de destino</translation>
    </message>
    <message id="target.type">
        <source>Type Target Locator</source>
        <extracomment>Share sheet action: opens the locator keypad to type the target</extracomment>
        <translation>Escribir el locator de destino</translation>
    </message>
    <message id="receiver.no-fix">
        <source>No fix</source>
        <extracomment>The receiver has lost its position fix; the last point stays shown</extracomment>
        <translation>Sin posición</translation>
    </message>
    <message id="receiver.2d">
        <source>2D fix</source>
        <extracomment>A two-dimensional fix: no height, so the position is weaker</extracomment>
        <translation>Posición 2D</translation>
    </message>
    <message id="receiver.3d">
        <source>3D fix</source>
        <extracomment>A three-dimensional fix, with height</extracomment>
        <translation>Posición 3D</translation>
    </message>
    <message id="receiver.satellites">
        <source>%1 · %2 of %3 satellites</source>
        <extracomment>The fix, then the satellites it uses out of those in view</extracomment>
        <translation>%1 · %2 de %3 satélites</translation>
    </message>
    <message id="receiver.satellites-spoken">
        <source>%1, %2 of %3 satellites</source>
        <extracomment>Spoken: the fix, then the satellites it uses out of those in view</extracomment>
        <translation>%1, %2 de %3 satélites</translation>
    </message>
    <message id="receiver.reconnecting">
        <source>GPS source lost · reconnecting…</source>
        <extracomment>The GPS daemon or the network went away; Veltor keeps trying to reach it</extracomment>
        <translation>Fuente GPS perdida · reconectando…</translation>
    </message>
    <message id="receiver.reconnecting-spoken">
        <source>GPS source lost, reconnecting</source>
        <extracomment>Spoken: the GPS daemon or the network went away; Veltor keeps trying to reach it</extracomment>
        <translation>Fuente GPS perdida, reconectando</translation>
    </message>
    <message id="station.title">
        <source>Station</source>
        <extracomment>Settings row and screen: where the GPS comes from and which radio programs get the grid</extracomment>
        <translation>Estación</translation>
    </message>
    <message id="station.gps-source">
        <source>GPS Source</source>
        <extracomment>Heading of the choice of GPS source</extracomment>
        <translation>Fuente GPS</translation>
    </message>
    <message id="station.gps-source.system">
        <source>System Positioning</source>
        <extracomment>GPS source: the operating system&apos;s own positioning service</extracomment>
        <translation>Ubicación del sistema</translation>
    </message>
    <message id="station.gps-source.gpsd">
        <source>gpsd</source>
        <extracomment>GPS source: the gpsd daemon (a program name, usually left as it is)</extracomment>
        <translation>gpsd</translation>
    </message>
    <message id="station.address">
        <source>Host:Port</source>
        <extracomment>Label and placeholder of a network address field</extracomment>
        <translation>Host:Puerto</translation>
    </message>
    <message id="station.wsjtx">
        <source>Send Grid to WSJT-X</source>
        <extracomment>Switch: send the live 6-character locator to WSJT-X</extracomment>
        <translation>Enviar el locator a WSJT-X</translation>
    </message>
    <message id="station.js8call">
        <source>Send Grid to JS8Call</source>
        <extracomment>Switch: send the live 6-character locator to JS8Call</extracomment>
        <translation>Enviar el locator a JS8Call</translation>
    </message>
    <message id="station.live-only">
        <source>The grid is sent only while tracking live, each time it changes.</source>
        <extracomment>Under the switches: when the grid is sent</extracomment>
        <translation>El locator solo se envía durante el seguimiento en vivo, cada vez que cambia.</translation>
    </message>
    <message id="station.gpsd-address-spoken">
        <source>gpsd address</source>
        <extracomment>Spoken name of the gpsd address field</extracomment>
        <translation>Dirección de gpsd</translation>
    </message>
    <message id="station.wsjtx-address-spoken">
        <source>WSJT-X address</source>
        <extracomment>Spoken name of the WSJT-X address field</extracomment>
        <translation>Dirección de WSJT-X</translation>
    </message>
    <message id="station.js8call-address-spoken">
        <source>JS8Call address</source>
        <extracomment>Spoken name of the JS8Call address field</extracomment>
        <translation>Dirección de JS8Call</translation>
    </message>
    <message id="settings.address.error.form">
        <source>Write the address as host:port, with an IPv6 address in brackets.</source>
        <extracomment>Under an address field of the settings when it is not HOST:PORT</extracomment>
        <translation>Escriba la dirección como host:puerto, con una dirección IPv6 entre corchetes.</translation>
    </message>
    <message id="settings.address.error.port">
        <source>The port must be a number from 1 to 65535.</source>
        <extracomment>Under an address field of the settings when the port is not a port number</extracomment>
        <translation>El puerto debe ser un número de 1 a 65535.</translation>
    </message>
    <message id="settings.address.error.host">
        <source>The host must be an IP address or a host name.</source>
        <extracomment>Under an address field of the settings when the part before the port is no host</extracomment>
        <translation>El host debe ser una dirección IP o un nombre de host.</translation>
    </message>
    <message id="map-source.mbtiles-failed.title">
        <source>Map File Unavailable</source>
        <extracomment>Title of the message when the chosen map file cannot be used</extracomment>
        <translation>Archivo de mapa no disponible</translation>
    </message>
    <message id="map-source.mbtiles-failed.message">
        <source>%1 The offline basemap is shown instead.</source>
        <extracomment>The reason a map file cannot be used, then what the map shows instead</extracomment>
        <translation>%1 En su lugar se muestra el mapa base sin conexión.</translation>
    </message>
    <message id="keep-area.title">
        <source>Keep Area Offline</source>
        <extracomment>Title of the screen that keeps an area of the online map for use without a network, and of the share sheet&apos;s button that opens it</extracomment>
        <translation>Guardar área sin conexión</translation>
    </message>
    <message id="map-source.offline">
        <source>Offline Basemap</source>
        <extracomment>Map source: the map built into the app, for use without a network</extracomment>
        <translation>Mapa base sin conexión</translation>
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
        <translation>Archivo MBTiles</translation>
    </message>
    <message id="map-source.custom">
        <source>Custom Tile Server</source>
        <extracomment>Map source: a tile server given by its address template</extracomment>
        <translation>Servidor de teselas propio</translation>
    </message>
    <message id="mbtiles.missing">
        <source>There is no file %1.</source>
        <extracomment>A map file the user named is not there; %1 is its path</extracomment>
        <translation>No existe el archivo %1.</translation>
    </message>
    <message id="mbtiles.not-mbtiles">
        <source>%1 is not an MBTiles file.</source>
        <extracomment>A file the user named as a map is something else; %1 is its path</extracomment>
        <translation>%1 no es un archivo MBTiles.</translation>
    </message>
    <message id="mbtiles.vector">
        <source>%1 holds vector tiles; only MBTiles files of PNG, JPEG or WebP images can be shown.</source>
        <extracomment>%1 is the path of a map file whose tiles are vector data, which the app cannot draw</extracomment>
        <translation>%1 contiene teselas vectoriales; solo se pueden mostrar archivos MBTiles con imágenes PNG, JPEG o WebP.</translation>
    </message>
    <message id="mbtiles.locked">
        <source>%1 is locked by another program.</source>
        <extracomment>%1 is the path of a map file that another program is writing</extracomment>
        <translation>%1 está bloqueado por otro programa.</translation>
    </message>
    <message id="mbtiles.damaged">
        <source>%1 is damaged.</source>
        <extracomment>%1 is the path of a map file whose contents are broken, e.g. cut short</extracomment>
        <translation>%1 está dañado.</translation>
    </message>
    <message id="mbtiles.disk-full">
        <source>%1 could not be written: the disk is full.</source>
        <extracomment>%1 is the path of a map file being written</extracomment>
        <translation>No se pudo escribir %1: el disco está lleno.</translation>
    </message>
    <message id="mbtiles.read-only">
        <source>%1 could not be written: it is read-only.</source>
        <extracomment>%1 is the path of a map file being written</extracomment>
        <translation>No se pudo escribir %1: es de solo lectura.</translation>
    </message>
    <message id="mbtiles.write-failed">
        <source>%1 could not be written: %2</source>
        <extracomment>%1 is the path of a map file, %2 the system&apos;s reason (in English)</extracomment>
        <translation>No se pudo escribir %1: %2</translation>
    </message>
    <message id="mbtiles.read-failed">
        <source>%1 cannot be read: %2</source>
        <extracomment>%1 is the path of a map file, %2 the system&apos;s reason (in English)</extracomment>
        <translation>No se puede leer %1: %2</translation>
    </message>
    <message id="mbtiles.no-driver">
        <source>MBTiles files cannot be read: Qt&apos;s SQLite driver is missing.</source>
        <extracomment>The part of Qt that reads SQLite databases is not installed</extracomment>
        <translation>No se pueden leer archivos MBTiles: falta el controlador SQLite de Qt.</translation>
    </message>
    <message id="map.attribution.places">
        <source>Places © GeoNames (CC BY 4.0)</source>
        <extracomment>Credit shown on the offline map for its place names; GeoNames is a name, CC BY 4.0 a licence</extracomment>
        <translation>Lugares © GeoNames (CC BY 4.0)</translation>
    </message>
    <message id="map-download.bad-template">
        <source>The tile server&apos;s address cannot be used for a download.</source>
        <extracomment>Why an area of the map cannot be kept: the tile server address is unusable</extracomment>
        <translation>La dirección del servidor de teselas no se puede usar para una descarga.</translation>
    </message>
    <message id="map-download.bad-zoom">
        <source>Choose zoom levels from %1 to %2, the lower one first.</source>
        <extracomment>Why an area of the map cannot be kept; %1 and %2 are the lowest and highest zoom levels there are</extracomment>
        <translation>Elige niveles de zoom de %1 a %2, primero el más bajo.</translation>
    </message>
    <message id="map-download.bad-area">
        <source>Choose an area on the map to keep.</source>
        <extracomment>Why an area of the map cannot be kept: it has no size or lies off the map</extracomment>
        <translation>Elige en el mapa un área para guardar.</translation>
    </message>
    <message id="map-download.zoom-forbidden">
        <source>This map&apos;s server allows keeping zoom levels up to %1 only: its usage policy forbids bulk downloads of closer ones.</source>
        <extracomment>Why an area of the map cannot be kept; %1 is the highest zoom level the map&apos;s server lets apps download</extracomment>
        <translation>El servidor de este mapa solo permite guardar hasta el nivel de zoom %1: su política de uso prohíbe las descargas masivas de niveles más cercanos.</translation>
    </message>
    <message id="map-download.too-many">
        <source>That is %L1 tiles; this map&apos;s server allows at most %L2 in one download. Choose a smaller area or fewer zoom levels.</source>
        <extracomment>Why an area of the map cannot be kept; %L1 is the number of map tiles it needs, %L2 the most the map&apos;s server allows in one download</extracomment>
        <translation>Son %L1 teselas; el servidor de este mapa permite como máximo %L2 por descarga. Elige un área más pequeña o menos niveles de zoom.</translation>
    </message>
    <message id="map-download.no-job">
        <source>%1 holds no download to continue.</source>
        <extracomment>%1 is the path of a map file that was not made by a download in the app</extracomment>
        <translation>%1 no contiene ninguna descarga que continuar.</translation>
    </message>
    <message id="map-download.busy">
        <source>A download is already running.</source>
        <extracomment>A second download of map tiles was asked for while one runs</extracomment>
        <translation>Ya hay una descarga en curso.</translation>
    </message>
    <message id="map-download.other-map">
        <source>%1 already holds another map; choose another file.</source>
        <extracomment>%1 is the path of a map file chosen for a download that holds some other map</extracomment>
        <translation>%1 ya contiene otro mapa; elige otro archivo.</translation>
    </message>
    <message id="map-download.complete" numerus="yes">
        <source>Kept %n tile(s) for use without a network.</source>
        <extracomment>A download of map tiles for use without a network ended well; %n is the number of tiles</extracomment>
        <translation>
            <numerusform>Se guardó %n tesela para usarla sin conexión.</numerusform>
            <numerusform>Se guardaron %n teselas para usarlas sin conexión.</numerusform>
        </translation>
    </message>
    <message id="map-download.incomplete" numerus="yes">
        <source>%n tile(s) could not be fetched. Start the download again later to fetch them.</source>
        <extracomment>A download of map tiles ended with some missing; %n is how many</extracomment>
        <translation>
            <numerusform>No se pudo obtener %n tesela. Vuelve a iniciar la descarga más tarde para obtenerla.</numerusform>
            <numerusform>No se pudieron obtener %n teselas. Vuelve a iniciar la descarga más tarde para obtenerlas.</numerusform>
        </translation>
    </message>
    <message id="map-download.cancelled">
        <source>Download stopped. Start it again to continue where it left off.</source>
        <extracomment>A download of map tiles was stopped by the user</extracomment>
        <translation>Descarga detenida. Vuelve a iniciarla para continuar donde se quedó.</translation>
    </message>
    <message id="map-download.write-failed">
        <source>%1 The download stopped; the tiles kept until then are safe.</source>
        <extracomment>%1 says why a map file could not be written, e.g. a full disk</extracomment>
        <translation>%1 La descarga se detuvo; las teselas guardadas hasta ese momento están a salvo.</translation>
    </message>
    <message id="keep-area.visible">
        <source>Visible Area</source>
        <extracomment>Keep the part of the map on the screen</extracomment>
        <translation>Área visible</translation>
    </message>
    <message id="keep-area.radius">
        <source>%L1&#xa0;km Around the Point</source>
        <extracomment>Keep the map within this many kilometres of the point</extracomment>
        <translation>%L1&#xa0;km alrededor del punto</translation>
    </message>
    <message id="keep-area.step-down">
        <source>%1, one level lower</source>
        <extracomment>Spoken: the button that lowers the first or the last zoom level by one</extracomment>
        <translation>%1, un nivel más bajo</translation>
    </message>
    <message id="keep-area.step-up">
        <source>%1, one level higher</source>
        <extracomment>Spoken: the button that raises the first or the last zoom level by one</extracomment>
        <translation>%1, un nivel más alto</translation>
    </message>
    <message id="keep-area.from">
        <source>First level</source>
        <extracomment>The first zoom level kept</extracomment>
        <translation>Primer nivel</translation>
    </message>
    <message id="keep-area.to">
        <source>Last level</source>
        <extracomment>The last zoom level kept</extracomment>
        <translation>Último nivel</translation>
    </message>
    <message id="keep-area.start">
        <source>Keep Area</source>
        <extracomment>Button that starts the download</extracomment>
        <translation>Guardar área</translation>
    </message>
    <message id="keep-area.resume">
        <source>Resume Last Download</source>
        <extracomment>Button that continues a download that was cut short</extracomment>
        <translation>Reanudar la última descarga</translation>
    </message>
    <message id="keep-area.cancel">
        <source>Stop</source>
        <extracomment>Button that stops the download, keeping what arrived</extracomment>
        <translation>Detener</translation>
    </message>
    <message id="keep-area.close">
        <source>Close</source>
        <extracomment>Button that closes the screen</extracomment>
        <translation>Cerrar</translation>
    </message>
    <message id="keep-area.zoom">
        <source>Zoom levels %1 to %2</source>
        <extracomment>The zoom levels kept, first and last (0 is the whole world, 16 shows streets)</extracomment>
        <translation>Niveles de zoom %1 a %2</translation>
    </message>
    <message id="keep-area.name">
        <source>Area at %1</source>
        <extracomment>Name of a kept area, after the locator of the point it was kept around</extracomment>
        <translation>Área alrededor de %1</translation>
    </message>
    <message id="keep-area.plan">
        <source>%1 tiles, about %2&#xa0;MB</source>
        <extracomment>What a download would take: tiles, and megabytes with one decimal</extracomment>
        <translation>%1 teselas, unos %2&#xa0;MB</translation>
    </message>
    <message id="keep-area.needs-online">
        <source>Choose OpenStreetMap, OpenTopoMap or your own tile server under Settings › Map source to keep an area of it. The offline basemap and map files need no download.</source>
        <extracomment>On the keep-area screen when the map is not drawn from the network</extracomment>
        <translation>Elige OpenStreetMap, OpenTopoMap o tu propio servidor de teselas en Ajustes › Fuente del mapa para guardar un área. El mapa base sin conexión y los archivos de mapa no necesitan descarga.</translation>
    </message>
    <message id="keep-area.policy">
        <source>%1 allows keeping only small areas: zoom levels up to %2 and %3 tiles at a time.</source>
        <extracomment>The service&apos;s own rule for downloads; %1 its name, %2 a zoom level, %3 a tile count</extracomment>
        <translation>%1 solo permite guardar áreas pequeñas: niveles de zoom hasta %2 y %3 teselas cada vez.</translation>
    </message>
    <message id="keep-area.progress">
        <source>%1 of %2 tiles</source>
        <extracomment>Download progress: tiles kept so far of all of them</extracomment>
        <translation>%1 de %2 teselas</translation>
    </message>
    <message id="keep-area.progress-failed">
        <source>%1 · %2 failed</source>
        <extracomment>Added to the progress: tiles the server did not give</extracomment>
        <translation>%1 · %2 fallidas</translation>
    </message>
    <message id="keep-area.done">
        <source>%1 The map now shows the kept area, with the basemap around it; Settings › Map source goes back to the online map.</source>
        <extracomment>After a finished download, which the map then shows</extracomment>
        <translation>%1 El mapa muestra ahora el área guardada, rodeada por el mapa base; en Ajustes › Fuente del mapa puedes volver al mapa en línea.</translation>
    </message>
    <message id="settings.map">
        <source>Map source</source>
        <extracomment>Settings row and picker: where the map&apos;s tiles come from</extracomment>
        <translation>Fuente del mapa</translation>
    </message>
    <message id="map-source.mbtiles-path">
        <source>MBTiles file path</source>
        <extracomment>Field for the path of a map file in the MBTiles format</extracomment>
        <translation>Ruta del archivo MBTiles</translation>
    </message>
    <message id="map-source.template">
        <source>https://server/{z}/{x}/{y}.png</source>
        <extracomment>Field for a tile server&apos;s address template; {z}, {x} and {y} stand as they are</extracomment>
        <translation>https://servidor/{z}/{x}/{y}.png</translation>
    </message>
    <message id="map-source.attribution">
        <source>Credit shown on the map</source>
        <extracomment>Field for the credit a tile server asks to be shown on the map</extracomment>
        <translation>Atribución en el mapa</translation>
    </message>
    <message id="map-source.note.offline">
        <source>Coastlines, borders, lakes, rivers and places, with no network at all.</source>
        <extracomment>Under the map sources when the built-in map is chosen</extracomment>
        <translation>Costas, fronteras, lagos, ríos y lugares, sin ninguna conexión.</translation>
    </message>
    <message id="map-source.note.online">
        <source>Needs a network; tiles seen once stay for offline use. %1. Keep an area from the share sheet before you go: up to zoom 16 and 3,000 tiles, as the service asks.</source>
        <extracomment>Under the map sources when a public tile service is chosen; %1 is its credit</extracomment>
        <translation>Necesita conexión; las teselas vistas una vez quedan disponibles sin conexión. %1. Antes de salir, guarda un área desde «Compartir»: hasta el zoom 16 y 3000 teselas, como pide el servicio.</translation>
    </message>
    <message id="map-source.note.mbtiles">
        <source>Drawn from the file; the offline basemap fills what the file does not hold.</source>
        <extracomment>Under the map sources when a map file is chosen</extracomment>
        <translation>Se dibuja a partir del archivo; el mapa base sin conexión completa lo que el archivo no contiene.</translation>
    </message>
    <message id="map-source.note.custom">
        <source>Needs a network; tiles seen once stay for offline use. %1.</source>
        <extracomment>Under the map sources when the user&apos;s own tile server is chosen; %1 is its credit</extracomment>
        <translation>Necesita conexión; las teselas vistas una vez quedan disponibles sin conexión. %1.</translation>
    </message>
    <message id="map-source.mbtiles-needed">
        <source>Enter the path of an MBTiles file, then press Enter.</source>
        <extracomment>Under the MBTiles path field when that source is tapped before a file is given</extracomment>
        <translation>Escribe la ruta de un archivo MBTiles y pulsa Intro.</translation>
    </message>
    <message id="map-source.template-needed">
        <source>Enter the server&apos;s tile address with {z}, {x} and {y}, then press Enter.</source>
        <extracomment>Under the URL template field when that source is tapped before a template is given</extracomment>
        <translation>Escribe la dirección de teselas del servidor con {z}, {x} y {y} y pulsa Intro.</translation>
    </message>
    <message id="map-source.template-error">
        <source>A tile address starts with http:// or https:// and holds {z}, {x} and {y}.</source>
        <extracomment>Under the URL template field when the text is no tile address</extracomment>
        <translation>Una dirección de teselas empieza por http:// o https:// y contiene {z}, {x} y {y}.</translation>
    </message>
    <message id="receiver.waiting">
        <source>Waiting for a position fix…</source>
        <extracomment>Tracking has begun; no position has come from the GPS yet</extracomment>
        <translation>Esperando una posición…</translation>
    </message>
    <message id="receiver.waiting-spoken">
        <source>Waiting for a position fix</source>
        <extracomment>Spoken: tracking has begun; no position has come from the GPS yet</extracomment>
        <translation>Esperando una posición</translation>
    </message>
    <message id="receiver.no-fix-yet">
        <source>No fix yet</source>
        <extracomment>The receiver is talking but has not found its position yet (a cold start)</extracomment>
        <translation>Aún sin posición</translation>
    </message>
    <message id="receiver.fix">
        <source>Fix</source>
        <extracomment>The receiver has a position fix and does not say whether 2D or 3D</extracomment>
        <translation>Posición</translation>
    </message>
    <message id="gps.error.gpsd-silent">
        <source>gpsd at %1 has sent no reports for %2&#xa0;s.</source>
        <extracomment>Tracking ended: gpsd is reachable but says nothing of a receiver; %1 HOST:PORT, %2 seconds</extracomment>
        <translation>gpsd en %1 no ha enviado informes en %2&#xa0;s.</translation>
    </message>
    <message id="gps.error.gpsd-gone">
        <source>gpsd at %1 has been gone for %2&#xa0;s.</source>
        <extracomment>Tracking ended: gpsd went away and did not come back; %1 HOST:PORT, %2 seconds</extracomment>
        <translation>gpsd en %1 lleva %2&#xa0;s sin responder.</translation>
    </message>
    <message id="gps.error.gpsd-connect">
        <source>Cannot connect to gpsd at %1 within %2&#xa0;s.</source>
        <extracomment>Tracking ended: gpsd could not be reached; %1 HOST:PORT, %2 seconds</extracomment>
        <translation>No se pudo conectar con gpsd en %1 en %2&#xa0;s.</translation>
    </message>
    <message id="gps.error.no-fix">
        <source>No position fix for %1&#xa0;min: tracking has stopped.</source>
        <extracomment>Tracking ended: the receiver talked but found no position for this long; %1 minutes</extracomment>
        <translation>Sin posición durante %1&#xa0;min: seguimiento detenido.</translation>
    </message>
    <message id="gps.error.device-open">
        <source>Cannot open the GPS device %1: %2.</source>
        <extracomment>Tracking ended: the serial GPS receiver cannot be opened; %1 its device, %2 the reason</extracomment>
        <translation>No se puede abrir el GPS %1: %2.</translation>
    </message>
    <message id="gps.error.device-gone">
        <source>The GPS device %1 was disconnected.</source>
        <extracomment>Tracking ended: the serial GPS receiver was unplugged; %1 its device</extracomment>
        <translation>El GPS %1 se ha desconectado.</translation>
    </message>
    <message id="gps.error.device-failed">
        <source>The GPS device %1 failed: %2.</source>
        <extracomment>Tracking ended: the serial GPS receiver failed; %1 its device, %2 why</extracomment>
        <translation>El GPS %1 ha fallado: %2.</translation>
    </message>
    <message id="gps.error.tcp-closed">
        <source>The GPS source %1 closed the connection.</source>
        <extracomment>Tracking ended: the NMEA stream over the network was closed by its sender; %1 HOST:PORT</extracomment>
        <translation>La fuente GPS %1 ha cerrado la conexión.</translation>
    </message>
    <message id="gps.error.tcp-connect">
        <source>Cannot connect to the GPS source %1: %2.</source>
        <extracomment>Tracking ended: the NMEA stream cannot be reached; %1 HOST:PORT, %2 why</extracomment>
        <translation>No se puede conectar con la fuente GPS %1: %2.</translation>
    </message>
    <message id="gps.error.tcp-failed">
        <source>The connection to the GPS source %1 failed: %2.</source>
        <extracomment>Tracking ended: the NMEA stream&apos;s connection broke; %1 HOST:PORT, %2 why</extracomment>
        <translation>Ha fallado la conexión con la fuente GPS %1: %2.</translation>
    </message>
    <message id="gps.error.log-folder">
        <source>Cannot open the NMEA log %1: it is a folder.</source>
        <extracomment>Tracking ended: the NMEA log to replay is a folder; %1 its path</extracomment>
        <translation>No se puede abrir el registro NMEA %1: es una carpeta.</translation>
    </message>
    <message id="gps.error.log-open">
        <source>Cannot open the NMEA log %1: %2.</source>
        <extracomment>Tracking ended: the NMEA log to replay cannot be read; %1 its path, %2 why</extracomment>
        <translation>No se puede abrir el registro NMEA %1: %2.</translation>
    </message>
    <message id="gps.error.log-ended">
        <source>The NMEA log %1 has ended.</source>
        <extracomment>Tracking ended: the recorded NMEA log has been replayed to its end; %1 its path</extracomment>
        <translation>El registro NMEA %1 ha terminado.</translation>
    </message>
    <message id="gps.error.connect-timeout">
        <source>Cannot connect to the GPS source %1 within %2&#xa0;s.</source>
        <extracomment>Tracking ended: the NMEA stream could not be reached in time; %1 HOST:PORT, %2 seconds</extracomment>
        <translation>No se pudo conectar con la fuente GPS %1 en %2&#xa0;s.</translation>
    </message>
    <message id="gps.error.not-nmea">
        <source>The GPS source %1 sends no NMEA data.</source>
        <extracomment>Tracking ended: data arrives, but none of it is NMEA; %1 the GPS source</extracomment>
        <translation>La fuente GPS %1 no envía datos NMEA.</translation>
    </message>
    <message id="gps.error.silent">
        <source>The GPS source %1 has sent nothing for %2&#xa0;s.</source>
        <extracomment>Tracking ended: the GPS source has fallen silent; %1 the source, %2 seconds</extracomment>
        <translation>La fuente GPS %1 no ha enviado nada en %2&#xa0;s.</translation>
    </message>
    <message id="gps.error.system-access">
        <source>The system positioning service refused access to the position.</source>
        <extracomment>Tracking ended: the desktop&apos;s location service refused Veltor</extracomment>
        <translation>El servicio de ubicación del sistema deniega el acceso a la posición.</translation>
    </message>
    <message id="gps.error.system-closed">
        <source>The system positioning service has closed.</source>
        <extracomment>Tracking ended: the desktop&apos;s location service went away</extracomment>
        <translation>El servicio de ubicación del sistema se ha cerrado.</translation>
    </message>
    <message id="gps.error.system-no-fix">
        <source>The system positioning service has no position fix.</source>
        <extracomment>Tracking ended: the desktop&apos;s location service found no position</extracomment>
        <translation>El servicio de ubicación del sistema no tiene posición.</translation>
    </message>
    <message id="gps.error.system-failed">
        <source>The system positioning service failed.</source>
        <extracomment>Tracking ended: the desktop&apos;s location service failed for a reason it does not give</extracomment>
        <translation>El servicio de ubicación del sistema ha fallado.</translation>
    </message>
    <message id="gps.error.no-source">
        <source>No positioning source is available.</source>
        <extracomment>Tracking ended: there is neither a GPS source nor a desktop location service</extracomment>
        <translation>No hay ninguna fuente de ubicación disponible.</translation>
    </message>
    <message id="station.fix-wait">
        <source>Wait for a Fix</source>
        <extracomment>Heading of the choice of how long tracking waits for a receiver without a fix</extracomment>
        <translation>Esperar una posición</translation>
    </message>
    <message id="station.fix-wait.5min">
        <source>5 Minutes</source>
        <extracomment>How long tracking waits for a fix: five minutes</extracomment>
        <translation>5 minutos</translation>
    </message>
    <message id="station.fix-wait.15min">
        <source>15 Minutes</source>
        <extracomment>How long tracking waits for a fix: a quarter of an hour</extracomment>
        <translation>15 minutos</translation>
    </message>
    <message id="station.fix-wait.1h">
        <source>1 Hour</source>
        <extracomment>How long tracking waits for a fix: an hour</extracomment>
        <translation>1 hora</translation>
    </message>
    <message id="station.fix-wait.unlimited">
        <source>As Long as It Takes</source>
        <extracomment>Tracking waits for a fix for as long as the receiver talks</extracomment>
        <translation>Lo que haga falta</translation>
    </message>
    <message id="field-tools.folded">
        <source>Field tools: %1</source>
        <extracomment>Spoken name of the line that unfolds the field instruments; %1 what it shows folded</extracomment>
        <translation>Herramientas de campo: %1</translation>
    </message>
    <message id="field-tools.unfold">
        <source>Unfolds the field tools</source>
        <extracomment>Spoken hint of that line, folded</extracomment>
        <translation>Despliega las herramientas de campo</translation>
    </message>
    <message id="field-tools.fold">
        <source>Folds the field tools</source>
        <extracomment>Spoken hint of that line, unfolded</extracomment>
        <translation>Pliega las herramientas de campo</translation>
    </message>
    <message id="target.to">
        <source>To %1</source>
        <extracomment>Over the way to the target: the target&apos;s locator</extracomment>
        <translation>Hacia %1</translation>
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
        <translation>E</translation>
    </message>
    <message id="grid-position.west-letter">
        <source>W</source>
        <translation>O</translation>
    </message>
    <message id="grid-position.edge">
        <source>%1 %2</source>
        <extracomment>An edge&apos;s compass letter and the distance to it, on a side of the cell&apos;s square</extracomment>
        <translation>%1 %2</translation>
    </message>
    <message id="grid-position.corner">
        <source>Corner %1 at %2°</source>
        <extracomment>The nearest corner of the cell: its distance and bearing in degrees</extracomment>
        <translation>Esquina a %1, %2°</translation>
    </message>
    <message id="grid-position.summary-pole">
        <source>Edge %1, the pole</source>
        <extracomment>Under the cell&apos;s square: the nearest edge, which is a pole</extracomment>
        <translation>Borde %1, el polo</translation>
    </message>
    <message id="grid-position.summary">
        <source>Edge %1 → %2</source>
        <extracomment>Under the cell&apos;s square: the nearest edge and its distance, the cell beyond</extracomment>
        <translation>Borde %1 → %2</translation>
    </message>
    <message id="grid-position.detail">
        <source>%1 · %2</source>
        <extracomment>Under the cell&apos;s square: the nearest edge with the cell beyond, then the corner</extracomment>
        <translation>%1 · %2</translation>
    </message>
    <message id="target.secondary">
        <source>Long path %1 at %2° · Contest %3&#xa0;km</source>
        <extracomment>Under the target&apos;s distance: the long path&apos;s distance and bearing, then the distance as IARU Region 1 VHF contests score it, in whole kilometres</extracomment>
        <translation>Long path %1 a %2° · Concurso %3&#xa0;km</translation>
    </message>
    <message id="map.scale-bar">
        <source>Scale bar: %1</source>
        <extracomment>Spoken: the length of the map&apos;s scale bar</extracomment>
        <translation>Escala: %1</translation>
    </message>
    <message id="crossing.banner">
        <source>Entering %1</source>
        <extracomment>Banner over the map when a live fix enters another locator cell</extracomment>
        <translation>Entrando en %1</translation>
    </message>
    <message id="root.banner.close">
        <source>Close message</source>
        <extracomment>Spoken name of the button that closes the message at the top of the window</extracomment>
        <translation>Cerrar mensaje</translation>
    </message>
    <message id="settings.error.unreadable">
        <source>Part of the settings file %1 could not be read, and those settings are back to their defaults. The file as it was is kept as %2.</source>
        <extracomment>Shown once when the settings file has a part that cannot be read; %1 the file, %2 the copy</extracomment>
        <translation>Una parte del archivo de ajustes %1 no se pudo leer y esos ajustes han vuelto a sus valores predeterminados. El archivo tal como estaba se conserva como %2.</translation>
    </message>
    <message id="settings.error.unreadable-not-kept">
        <source>Part of the settings file %1 could not be read, and those settings are back to their defaults.</source>
        <extracomment>Shown once when the settings file has a part that cannot be read and no copy of it could be made; %1 the file</extracomment>
        <translation>Una parte del archivo de ajustes %1 no se pudo leer y esos ajustes han vuelto a sus valores predeterminados.</translation>
    </message>
    <message id="settings.address.error.interface">
        <source>Only a multicast group can name a network interface, after a % sign.</source>
        <extracomment>Under an address field of the settings when an interface follows no multicast group</extracomment>
        <translation>Solo un grupo multicast puede nombrar una interfaz de red, tras un signo %.</translation>
    </message>
    <message id="station.wsjtx.error.unknown-host">
        <source>Cannot listen for WSJT-X on %1: the host name is not known.</source>
        <extracomment>Under the WSJT-X address and in the GPS state line; %1 the address</extracomment>
        <translation>No se puede escuchar a WSJT-X en %1: el nombre de host no se conoce.</translation>
    </message>
    <message id="station.wsjtx.error.no-interface">
        <source>Cannot listen for WSJT-X on %1: this computer has no network interface of that name.</source>
        <extracomment>Under the WSJT-X address and in the GPS state line; %1 the address</extracomment>
        <translation>No se puede escuchar a WSJT-X en %1: este equipo no tiene ninguna interfaz de red con ese nombre.</translation>
    </message>
    <message id="station.wsjtx.error.in-use">
        <source>Cannot listen for WSJT-X on %1: another program holds the port.</source>
        <extracomment>Under the WSJT-X address and in the GPS state line; %1 the address</extracomment>
        <translation>No se puede escuchar a WSJT-X en %1: otro programa ocupa el puerto.</translation>
    </message>
    <message id="station.wsjtx.error.other">
        <source>Cannot listen for WSJT-X on %1: %2</source>
        <extracomment>Under the WSJT-X address and in the GPS state line; %1 the address, %2 the system&apos;s reason</extracomment>
        <translation>No se puede escuchar a WSJT-X en %1: %2</translation>
    </message>
    <message id="station.wsjtx.listening">
        <source>Listening for WSJT-X on %1</source>
        <extracomment>Under the WSJT-X address in the station settings; %1 the address</extracomment>
        <translation>Escuchando a WSJT-X en %1</translation>
    </message>
    <message id="mbtiles.too-slow">
        <source>%1 takes too long to read; it is not a map file Veltor can use.</source>
        <extracomment>%1 is the path of a map file whose reads do not finish in time (e.g. a hostile file)</extracomment>
        <translation>%1 tarda demasiado en leerse; no es un archivo de mapa que Veltor pueda usar.</translation>
    </message>
    <message id="map-source.mbtiles-checking">
        <source>Checking the map file…</source>
        <extracomment>Under the MBTiles path field while the file is read before it is used</extracomment>
        <translation>Comprobando el archivo de mapa…</translation>
    </message>
    <message id="menu.title">
        <source>Menu</source>
        <extracomment>Spoken name and tooltip of the button that opens the menu of tools</extracomment>
        <translation>Menú</translation>
    </message>
    <message id="menu.section.target">
        <source>Target</source>
        <extracomment>Heading of the menu&apos;s group of target actions</extracomment>
        <translation>Objetivo</translation>
    </message>
    <message id="menu.clear-target">
        <source>Clear Target</source>
        <extracomment>Menu action: the target is dropped, and with it the way to it</extracomment>
        <translation>Borrar objetivo</translation>
    </message>
    <message id="menu.section.field">
        <source>In the Field</source>
        <extracomment>Heading of the menu&apos;s group of actions for work in the field</extracomment>
        <translation>En el campo</translation>
    </message>
    <message id="menu.section.setup">
        <source>Set-up</source>
        <extracomment>Heading of the menu&apos;s group of set-up actions</extracomment>
        <translation>Configuración</translation>
    </message>
    <message id="menu.map-source">
        <source>Map Source</source>
        <extracomment>Menu action: opens the choice of map source</extracomment>
        <translation>Fuente del mapa</translation>
    </message>
    <message id="menu.station">
        <source>Station</source>
        <extracomment>Menu action: opens the station settings (GPS source, WSJT-X, JS8Call)</extracomment>
        <translation>Estación</translation>
    </message>
    <message id="root.gps-settings">
        <source>GPS Settings</source>
        <extracomment>Button of the message that the position cannot be used: opens the GPS settings</extracomment>
        <translation>Ajustes de GPS</translation>
    </message>
    <message id="welcome.title">
        <source>Welcome to Veltor</source>
        <extracomment>Title of the card that teaches the first run</extracomment>
        <translation>Bienvenido a Veltor</translation>
    </message>
    <message id="welcome.long-press">
        <source>Press and hold the map to set the point there.</source>
        <extracomment>First-run card: how to set the point on the map</extracomment>
        <translation>Mantenga pulsado el mapa para poner el punto allí.</translation>
    </message>
    <message id="welcome.track">
        <source>Track my position follows the GPS and keeps the point on your fix.</source>
        <extracomment>First-run card: what the tracking button does</extracomment>
        <translation>«Seguir mi posición» sigue el GPS y mantiene el punto en su posición.</translation>
    </message>
    <message id="welcome.dismiss">
        <source>Got It</source>
        <extracomment>Button that puts the first-run card away for good</extracomment>
        <translation>Entendido</translation>
    </message>
    <message id="appearance.automatic.detail">
        <source>Night from civil dusk to dawn at the point</source>
        <extracomment>Under the Automatic appearance: how it chooses between day and night</extracomment>
        <translation>Noche del crepúsculo civil al alba en el punto</translation>
    </message>
    <message id="appearance.automatic.name">
        <source>Automatic</source>
        <extracomment>Appearance that follows the sun: night between civil dusk and dawn, day otherwise</extracomment>
        <translation>Automático</translation>
    </message>
    <message id="welcome.menu.toolbar">
        <source>Menu, at the right of the toolbar, holds the target, proofs, offline areas and the settings.</source>
        <extracomment>First-run card, wide window: where the menu of tools is</extracomment>
        <translation>El menú, a la derecha de la barra de herramientas, contiene el objetivo, las pruebas, las zonas sin conexión y los ajustes.</translation>
    </message>
    <message id="welcome.menu.map">
        <source>Menu, at the top left of the map, holds the target, proofs, offline areas and the settings.</source>
        <extracomment>First-run card, phone: where the menu of tools is</extracomment>
        <translation>El menú, arriba a la izquierda del mapa, contiene el objetivo, las pruebas, las zonas sin conexión y los ajustes.</translation>
    </message>
    <message id="grid-position.folded">
        <source>Edge %1</source>
        <extracomment>Folded field panel, which must fit one line of a phone: the nearest edge and its distance</extracomment>
        <translation>Borde %1</translation>
    </message>
    <message id="target.folded">
        <source>Target %1</source>
        <extracomment>Folded field panel, which must fit one line of a phone: the distance to the target</extracomment>
        <translation>Destino %1</translation>
    </message>
</context>
</TS>
