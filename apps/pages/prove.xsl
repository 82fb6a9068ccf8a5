<?xml version="1.0" encoding="UTF-8"?>
<!-- The page of prove: whether errors lead back to the answers that were spoiled. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:import href="built-in:report.xsl"/>

  <xsl:template match="/prove" mode="title">
    <xsl:text>Whether errors lead back to the answers</xsl:text>
  </xsl:template>

  <xsl:template match="/prove" mode="content">
    <p class="soft">
      <xsl:if test="@form">Form <xsl:value-of select="@form"/>; </xsl:if>
      <xsl:value-of select="@answers"/> answers, each spoiled in every way that its type forbids, one at a time</p>
    <ul class="figures">
      <xsl:call-template name="figure">
        <xsl:with-param name="number" select="@exact"/>
        <xsl:with-param name="text" select="'led back by the exact list'"/>
        <xsl:with-param name="kind"><xsl:choose><xsl:when test="@complete">good</xsl:when><xsl:otherwise>bad</xsl:otherwise></xsl:choose></xsl:with-param>
      </xsl:call-template>
      <xsl:call-template name="figure">
        <xsl:with-param name="number" select="@compatible"/>
        <xsl:with-param name="text" select="'led back by the compatible lists'"/>
      </xsl:call-template>
      <xsl:call-template name="figure">
        <xsl:with-param name="number" select="@wrong"/>
        <xsl:with-param name="text" select="'wrong'"/>
      </xsl:call-template>
      <xsl:call-template name="figure">
        <xsl:with-param name="number" select="@not-wrong"/>
        <xsl:with-param name="text" select="'not wrong'"/>
      </xsl:call-template>
      <xsl:call-template name="figure">
        <xsl:with-param name="number" select="@no-verdict"/>
        <xsl:with-param name="text" select="'without a verdict'"/>
      </xsl:call-template>
    </ul>
    <xsl:call-template name="section">
      <xsl:with-param name="title" select="'Missed by the exact list'"/>
      <xsl:with-param name="spoiled" select="spoiled[@outcome='wrong' and not(@exact)]"/>
    </xsl:call-template>
    <xsl:call-template name="section">
      <xsl:with-param name="title" select="'Missed by the compatible lists alone'"/>
      <xsl:with-param name="spoiled" select="spoiled[@outcome='wrong' and @exact and not(@compatible)]"/>
    </xsl:call-template>
    <xsl:call-template name="section">
      <xsl:with-param name="title" select="'Led back by all lists'"/>
      <xsl:with-param name="spoiled" select="spoiled[@outcome='wrong' and @exact and @compatible]"/>
    </xsl:call-template>
    <xsl:call-template name="section">
      <xsl:with-param name="title" select="'Without a verdict'"/>
      <xsl:with-param name="spoiled" select="spoiled[@outcome='no-verdict']"/>
    </xsl:call-template>
    <xsl:call-template name="section">
      <xsl:with-param name="title" select="'Not wrong'"/>
      <xsl:with-param name="spoiled" select="spoiled[@outcome='not-wrong']"/>
    </xsl:call-template>
  </xsl:template>

  <xsl:template name="section">
    <xsl:param name="title"/>
    <xsl:param name="spoiled"/>
    <xsl:if test="$spoiled">
      <h2><xsl:value-of select="$title"/></h2>
      <table class="list">
        <thead><tr><th>Question</th><th>Spoiled</th><th>Answer</th><th>The exact list names</th></tr></thead>
        <tbody><xsl:apply-templates select="$spoiled"/></tbody>
      </table>
    </xsl:if>
  </xsl:template>

  <xsl:template match="spoiled">
    <tr>
      <td data-label="Question"><xsl:call-template name="name"/></td>
      <td data-label="Spoiled"><xsl:value-of select="translate(@spoiling, '-', ' ')"/></td>
      <td data-label="Answer" class="value"><xsl:value-of select="value"/></td>
      <td data-label="The exact list names">
        <xsl:for-each select="named">
          <xsl:if test="position() != 1"><br/></xsl:if>
          <xsl:call-template name="name"/>
        </xsl:for-each>
      </td>
    </tr>
  </xsl:template>

  <xsl:template name="name">
    <xsl:value-of select="@question"/>
    <xsl:if test="not(@question)">no question</xsl:if>
    <xsl:if test="@row">, row <xsl:value-of select="@row"/></xsl:if>
    <xsl:if test="@column">, column <xsl:value-of select="@column"/></xsl:if>
  </xsl:template>
</xsl:stylesheet>
