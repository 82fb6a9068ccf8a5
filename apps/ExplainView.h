#pragma once

#include "Explanation.h"
#include "Stylesheet.h"

/// The view document that explain.xsl makes a page of.
ViewDocument explainView(const Explanation& explanation);
