<?xml version="1.0" encoding="UTF-8"?>
<!-- The page of document: the data dictionary of a form. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:import href="built-in:report.xsl"/>

  <xsl:template match="/dictionary" mode="title">
    <xsl:text>Data dictionary</xsl:text>
    <xsl:if test="@form"> of <xsl:value-of select="@form"/></xsl:if>
  </xsl:template>

  <xsl:template match="/dictionary" mode="content">
    <xsl:if test="not(@schema='true')"><p class="soft">No schema is named, so no limits are told.</p></xsl:if>
    <table class="list">
      <colgroup><col style="width: 20%"/><col style="width: 30%"/><col style="width: 22%"/><col style="width: 28%"/></colgroup>
      <thead><tr><th>Question</th><th>Place in the message</th><th>Type and limits</th><th>Rule</th></tr></thead>
      <tbody><xsl:apply-templates select="entry"/></tbody>
    </table>
  </xsl:template>

  <xsl:template match="entry">
    <tr>
      <td data-label="Question">
        <xsl:if test="@label"><xsl:value-of select="@label"/><br/></xsl:if>
        <span class="soft"><xsl:value-of select="@question"/><xsl:if test="@column">, column <xsl:value-of select="@column"/></xsl:if></span>
      </td>
      <td data-label="Place in the message" class="mono">
        <xsl:apply-templates select="place" mode="lines"/>
      </td>
      <td data-label="Type and limits">
        <xsl:value-of select="@kind"/>
        <xsl:for-each select="limit"><br/><xsl:value-of select="."/></xsl:for-each>
        <xsl:if test="choice">
          <br/><xsl:text>one of: </xsl:text>
          <xsl:for-each select="choice">
            <xsl:if test="position() != 1">, </xsl:if>
            <span class="mono"><xsl:value-of select="."/></span>
          </xsl:for-each>
        </xsl:if>
      </td>
      <td data-label="Rule">
        <xsl:apply-templates select="rule" mode="lines"/>
        <xsl:if test="@source"><xsl:if test="rule"><br/></xsl:if><span class="mono soft"><xsl:value-of select="@source"/></span></xsl:if>
      </td>
    </tr>
  </xsl:template>

  <xsl:template match="*" mode="lines">
    <xsl:if test="position() != 1"><br/></xsl:if>
    <xsl:value-of select="."/>
  </xsl:template>
</xsl:stylesheet>
