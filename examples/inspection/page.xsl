<?xml version="1.0" encoding="UTF-8"?>
<!-- The built-in pages with the authority's name at the head and at the foot. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:import href="built-in:page.xsl"/>
  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

  <xsl:template name="masthead">
    <strong>Nordmark Building Authority</strong>
    <xsl:text> </xsl:text>
    <a href="/">All forms</a>
  </xsl:template>

  <xsl:template name="footer">
    <p>Nordmark Building Authority is invented, and so are its places, people and numbers.</p>
  </xsl:template>
</xsl:stylesheet>
