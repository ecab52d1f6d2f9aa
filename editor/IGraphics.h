#pragma once

// The editor as the plug-in core sees it. The plug-in owns one once it is attached, pushes
// parameter values and display-only values (such as a meter) into it, and asks it to prepare
// its drawing surface. The core depends on nothing else of the editor.
class IGraphics {
public:
  virtual ~IGraphics() {}

  // Stores the value in every control bound to the parameter and marks them for redraw.
  virtual void SetParameterFromPlug(int /*paramIdx*/, double /*value*/, bool /*normalized*/) {}
  // Stores a normalised value in one control by its index, for displays bound to no parameter.
  virtual void SetControlFromPlug(int /*controlIdx*/, double /*normalizedValue*/) {}
  // Creates the back buffer; called once when the editor is attached, before any drawing.
  virtual void PrepDraw() {}
};
