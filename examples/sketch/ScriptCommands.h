#pragma once

#include <Script.h>

class SketchWindow;

/// What a script can do to the window, by mouse and key messages, with all lengths in units of 1/96 inch:
///
///     size WIDTH HEIGHT       the window's client area
///     NAME                    a colour or a width of the menu: red, thick, ...
///     stroke X Y X Y ...      the left button goes down, the mouse moves, the button goes up
///     arc X Y RADIUS FROM TO  the same along a circle, between two angles in degrees
///     key NAME                back, delete, left, right, up, down, pageup or pagedown
///     wheel NOTCHES           away from the user when positive
///     drop PATH               as if the file were dropped on the window
///
/// The window must live as long as the commands.
support::Commands scriptCommands(SketchWindow& window);
