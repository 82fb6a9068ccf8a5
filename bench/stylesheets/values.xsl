<?xml version="1.0"?>
<!-- What both stylesheets for messages make of answers: dates, lines of addresses, texts of rows. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:param name="date"/>
  <xsl:param name="time"/>
  <xsl:param name="protocol"/>
  <xsl:key name="object" match="prtobjct" use="@id"/>

  <!-- d/m/y as y-m-d -->
  <xsl:template name="date">
    <xsl:param name="value"/>
    <xsl:variable name="rest" select="substring-after($value, '/')"/>
    <xsl:value-of select="concat(substring-after($rest, '/'), '-',
                                 format-number(substring-before($rest, '/'), '00'), '-',
                                 format-number(substring-before($value, '/'), '00'))"/>
  </xsl:template>

  <!-- The last line is the fourth, so the first one has the number of those that are missing. -->
  <xsl:template name="address">
    <xsl:param name="value"/>
    <xsl:param name="prefix"/>
    <xsl:param name="namespace"/>
    <xsl:variable name="lines" select="translate($value, '&#13;,', '')"/>
    <xsl:call-template name="lines">
      <xsl:with-param name="value" select="$lines"/>
      <xsl:with-param name="line"
        select="4 - string-length($lines) + string-length(translate($lines, '&#10;', ''))"/>
      <xsl:with-param name="prefix" select="$prefix"/>
      <xsl:with-param name="namespace" select="$namespace"/>
    </xsl:call-template>
  </xsl:template>

  <xsl:template name="lines">
    <xsl:param name="value"/>
    <xsl:param name="line"/>
    <xsl:param name="prefix"/>
    <xsl:param name="namespace"/>
    <xsl:variable name="more" select="contains($value, '&#10;')"/>
    <xsl:element name="{$prefix}line{$line}" namespace="{$namespace}">
      <xsl:choose>
        <xsl:when test="$more">
          <xsl:value-of select="substring-before($value, '&#10;')"/>
        </xsl:when>
        <xsl:otherwise><xsl:value-of select="$value"/></xsl:otherwise>
      </xsl:choose>
    </xsl:element>
    <xsl:if test="$more">
      <xsl:call-template name="lines">
        <xsl:with-param name="value" select="substring-after($value, '&#10;')"/>
        <xsl:with-param name="line" select="$line + 1"/>
        <xsl:with-param name="prefix" select="$prefix"/>
        <xsl:with-param name="namespace" select="$namespace"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>

  <!-- A row as one text. One without a label continues the text of the row before it. -->
  <xsl:template name="row-texts">
    <xsl:param name="name"/>
    <xsl:param name="namespace"/>
    <xsl:choose>
      <xsl:when test="row/@rowlabel">
        <xsl:for-each select="row[column/@value != '']">
          <xsl:element name="{$name}" namespace="{$namespace}">
            <xsl:value-of select="concat(../@tablelabel, ' - ', @rowlabel)"/>
            <xsl:apply-templates select="column" mode="text"/>
          </xsl:element>
        </xsl:for-each>
      </xsl:when>
      <xsl:otherwise>
        <xsl:apply-templates select="row[1]" mode="text">
          <xsl:with-param name="name" select="$name"/>
          <xsl:with-param name="namespace" select="$namespace"/>
        </xsl:apply-templates>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="row" mode="text">
    <xsl:param name="name"/>
    <xsl:param name="namespace"/>
    <xsl:param name="before"/>
    <xsl:variable name="text">
      <xsl:value-of select="$before"/>
      <xsl:apply-templates select="column" mode="text"/>
    </xsl:variable>
    <xsl:if test="column/@value != ''">
      <xsl:element name="{$name}" namespace="{$namespace}">
        <xsl:value-of select="$text"/>
      </xsl:element>
    </xsl:if>
    <xsl:apply-templates select="following-sibling::row[1]" mode="text">
      <xsl:with-param name="name" select="$name"/>
      <xsl:with-param name="namespace" select="$namespace"/>
      <xsl:with-param name="before" select="$text"/>
    </xsl:apply-templates>
  </xsl:template>

  <xsl:template match="column" mode="text">
    <xsl:value-of select="concat(' [', @columnlabel, ':', @value, ']')"/>
  </xsl:template>
</xsl:stylesheet>
