<?xml version="1.0" encoding="UTF-8"?>
<!-- The page of explain: what became of every answer of one submission. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:import href="built-in:report.xsl"/>

  <xsl:template match="/explain" mode="title">
    <xsl:text>Where every answer went</xsl:text>
  </xsl:template>

  <xsl:template match="/explain" mode="content">
    <xsl:if test="@form"><p class="soft">Form <xsl:value-of select="@form"/>; the schema: <xsl:value-of select="@verdict"/></p></xsl:if>
    <xsl:if test="@failure">
      <p class="alert">The run failed, and nothing is told behind the object with which it ended: <xsl:value-of select="@failure"/></p>
    </xsl:if>
    <ul class="figures">
      <xsl:call-template name="figure">
        <xsl:with-param name="number" select="@written"/>
        <xsl:with-param name="text" select="'written'"/>
        <xsl:with-param name="kind" select="'good'"/>
      </xsl:call-template>
      <xsl:call-template name="figure">
        <xsl:with-param name="number" select="@left-out"/>
        <xsl:with-param name="text" select="'left out on purpose'"/>
      </xsl:call-template>
      <xsl:call-template name="figure">
        <xsl:with-param name="number" select="@lost"/>
        <xsl:with-param name="text" select="'lost'"/>
        <xsl:with-param name="kind"><xsl:if test="@lost != '0'">bad</xsl:if></xsl:with-param>
      </xsl:call-template>
    </ul>
    <xsl:if test="answer[@outcome='lost']">
      <h2>What did not reach the message</h2>
      <xsl:call-template name="answers">
        <xsl:with-param name="answers" select="answer[@outcome='lost']"/>
      </xsl:call-template>
    </xsl:if>
    <h2>All answers</h2>
    <xsl:call-template name="answers">
      <xsl:with-param name="answers" select="answer[normalize-space(value) != '']"/>
    </xsl:call-template>
    <xsl:if test="answer[normalize-space(value) = '']">
      <p class="soft">Not answered:
        <xsl:for-each select="answer[normalize-space(value) = '']">
          <xsl:if test="position() != 1">; </xsl:if>
          <xsl:call-template name="name"/>
        </xsl:for-each>
      </p>
    </xsl:if>
  </xsl:template>

  <xsl:template name="answers">
    <xsl:param name="answers"/>
    <table class="list">
      <colgroup><col style="width: 18%"/><col style="width: 20%"/><col style="width: 16%"/><col style="width: 32%"/><col style="width: 14%"/></colgroup>
      <thead><tr><th>Question</th><th>Answer</th><th>Outcome</th><th>Place in the message</th><th>Rule</th></tr></thead>
      <tbody><xsl:apply-templates select="$answers"/></tbody>
    </table>
  </xsl:template>

  <xsl:template match="answer">
    <tr>
      <td data-label="Question">
        <xsl:if test="@label"><xsl:value-of select="@label"/><br/></xsl:if>
        <span class="soft"><xsl:call-template name="name"/></span>
      </td>
      <td data-label="Answer" class="value"><xsl:value-of select="value"/></td>
      <td data-label="Outcome">
        <span class="mark {@outcome}"><xsl:value-of select="translate(@outcome, '-', ' ')"/></span>
        <xsl:if test="@why"><br/><xsl:value-of select="@why"/><xsl:text> </xsl:text><span class="soft"><xsl:value-of select="@reason"/></span></xsl:if>
      </td>
      <td data-label="Place in the message" class="mono">
        <xsl:for-each select="place">
          <xsl:if test="position() != 1"><br/></xsl:if>
          <xsl:value-of select="."/>
        </xsl:for-each>
      </td>
      <td data-label="Rule" class="mono"><xsl:value-of select="@rule"/></td>
    </tr>
  </xsl:template>

  <xsl:template name="name">
    <xsl:value-of select="@question"/>
    <xsl:if test="@row">, row <xsl:value-of select="@row"/></xsl:if>
    <xsl:if test="@column">, column <xsl:value-of select="@column"/></xsl:if>
  </xsl:template>
</xsl:stylesheet>
