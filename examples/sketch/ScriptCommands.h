#pragma once

#include "SketchWindow.h"

#include <string>

/// Plays a file of mouse and key messages to the window, one command a line:
///
///     # what follows is a comment
///     size WIDTH HEIGHT       the window's client area
///     NAME                    a colour or a width of the menu: red, thick, ...
///     stroke X Y X Y ...      the left button goes down, the mouse moves, the button goes up
///     arc X Y RADIUS FROM TO  the same along a circle, between two angles in degrees
///     key NAME                back, delete, left, right, up, down, pageup or pagedown
///     wheel NOTCHES           away from the user when positive
///     drop PATH               as if the file were dropped on the window
///     wait MS                 handles messages and timers for so long
///
/// Throws `std::runtime_error` that names the line when it cannot be played.
void playScript(SketchWindow& window, const std::string& file);
