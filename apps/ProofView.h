#pragma once

#include "Proof.h"
#include "Stylesheet.h"

/// The view document that prove.xsl makes a page of.
ViewDocument proofView(const Proof& proof);
