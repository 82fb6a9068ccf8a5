<?xml version="1.0" encoding="UTF-8"?>
<!-- The frame of every page that a sub-command writes: one file with nothing outside itself, for a screen of any
     width and for paper. A page imports it as "built-in:report.xsl" and gives the two modes "title" and
     "content" of its view document's root. Tables of class "list" become one block a row in a narrow window; each
     cell tells its heading in "data-label". -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

  <xsl:template match="/*">
    <html lang="en">
      <head>
        <meta name="viewport" content="width=device-width, initial-scale=1"/>
        <title><xsl:apply-templates select="." mode="title"/></title>
        <link rel="icon" href="data:,"/>
        <style><xsl:call-template name="style"/></style>
      </head>
      <body>
        <main>
          <h1><xsl:apply-templates select="." mode="title"/></h1>
          <xsl:apply-templates select="." mode="content"/>
        </main>
      </body>
    </html>
  </xsl:template>

  <!-- A number with what it counts. -->
  <xsl:template name="figure">
    <xsl:param name="number"/>
    <xsl:param name="text"/>
    <xsl:param name="kind"/>
    <li class="{$kind}"><strong><xsl:value-of select="$number"/></strong><xsl:text> </xsl:text><xsl:value-of select="$text"/></li>
  </xsl:template>

  <xsl:template name="style">
:root {
  --ink: #1a1f24; --soft: #55606b; --line: #b9c2ca; --paper: #fff; --wash: #f2f5f7;
  --bad: #b3201b; --bad-wash: #fdf0ef; --good: #1e6b34; --good-wash: #eef7f0;
}
* { box-sizing: border-box; }
body { margin: 0; color: var(--ink); background: var(--wash);
  font: 1rem/1.5 system-ui, "Liberation Sans", Arial, sans-serif; }
main { max-width: 80rem; margin: 0 auto; padding: 1rem 1.25rem 3rem; }
h1 { font-size: 1.9rem; line-height: 1.2; margin: 1rem 0; }
h2 { font-size: 1.3rem; line-height: 1.3; margin: 2rem 0 .75rem; }
.figures { display: flex; flex-wrap: wrap; gap: .75rem; padding: 0; margin: 1rem 0; list-style: none; }
.figures li { background: var(--paper); border: 1px solid var(--line); border-radius: .5rem; padding: .5rem 1rem; }
.figures strong { font-size: 1.4rem; }
.figures .bad { border-color: var(--bad); background: var(--bad-wash); color: var(--bad); }
.figures .good { border-color: var(--good); background: var(--good-wash); color: var(--good); }
.alert { border: 1px solid var(--bad); border-left-width: .5rem; background: var(--bad-wash); padding: .75rem 1rem; }
.list { width: 100%; table-layout: fixed; border-collapse: collapse; background: var(--paper); border: 1px solid var(--line); }
.list th, .list td { text-align: left; vertical-align: top; padding: .5rem .6rem; border-bottom: 1px solid var(--line); }
.list th { background: var(--wash); }
.list td { overflow-wrap: anywhere; }
.soft { color: var(--soft); font-size: .875rem; }
.mono { font-family: ui-monospace, "Liberation Mono", monospace; font-size: .875rem; }
.value { white-space: pre-wrap; }
.mark { display: inline-block; border-radius: .25rem; padding: 0 .4rem; white-space: nowrap; background: var(--wash); }
.mark.written { background: var(--good-wash); color: var(--good); }
.mark.lost { background: var(--bad-wash); color: var(--bad); font-weight: 600; }
@media (max-width: 50rem) {
  .list, .list tbody, .list tr, .list td { display: block; }
  .list thead { position: absolute; width: 1px; height: 1px; overflow: hidden; clip: rect(0 0 0 0); }
  .list td { border: 0; padding: .2rem .75rem; }
  .list td[data-label]::before { content: attr(data-label); display: block; color: var(--soft); font-size: .8rem; }
  .list td:empty { display: none; }
  .list tr { border-bottom: 1px solid var(--line); padding: .5rem 0; }
}
@media print {
  body { background: none; font-size: 9pt; }
  main { max-width: none; padding: 0; }
  .list tr { break-inside: avoid; }
  .list thead { display: table-header-group; }
  .mark, .figures li, .alert, .list th { background: none; }
}
@page { margin: 15mm; }
  </xsl:template>
</xsl:stylesheet>
