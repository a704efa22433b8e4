<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="distance.meters.long">
        <source>%lld m</source>
        <extracomment>Long Meters Distance</extracomment>
        <translation>%lld m</translation>
    </message>
    <message id="distance.kilometers.long.fractional">
        <source>%.2f km</source>
        <extracomment>Long Kilometers Distance</extracomment>
        <translation>%.2f km</translation>
    </message>
    <message id="distance.kilometers.long.integral">
        <source>%lld km</source>
        <extracomment>Long Kilometers Distance</extracomment>
        <translation>%lld km</translation>
    </message>
    <message id="distance.feet.long">
        <source>%lld ft</source>
        <extracomment>Long Feet Distance</extracomment>
        <translation>%lld ft</translation>
    </message>
    <message id="distance.miles.long.fractional">
        <source>%.2f mi</source>
        <extracomment>Long Miles Distance</extracomment>
        <translation>%.2f mi</translation>
    </message>
    <message id="distance.miles.long.integral">
        <source>%lld mi</source>
        <extracomment>Long Miles Distance</extracomment>
        <translation>%lld mi</translation>
    </message>
    <message id="settings.error.not-saved">
        <source>Settings cannot be saved to %1. Changes last until Veltor closes.</source>
        <extracomment>Shown when the settings file cannot be written (read-only or full disk)</extracomment>
        <translation>Settings cannot be saved to %1. Changes last until Veltor closes.</translation>
    </message>
    <message id="toolbar.accuracy">
        <source>± %1</source>
        <extracomment>Label showing accuracy of tracked location</extracomment>
        <translation>± %1</translation>
    </message>
    <message id="tracking.error.disabled.title">
        <source>Location Unavailable</source>
        <extracomment>Tracking Disabled Title</extracomment>
        <translation>Location Unavailable</translation>
    </message>
    <message id="tracking.error.disabled.message">
        <source>Veltor cannot use your position. Check that a GPS source is connected and that location access is allowed.</source>
        <extracomment>Tracking Disabled Message</extracomment>
        <translation>Veltor cannot use your position. Check that a GPS source is connected and that location access is allowed.</translation>
    </message>
    <message id="general.ok">
        <source>OK</source>
        <extracomment>Action to dismiss dialog</extracomment>
        <translation>OK</translation>
    </message>
</context>
</TS>
