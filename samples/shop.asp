<%@ Language=VBScript CodePage=1252 %>
<% Option Explicit
Dim Conn, Seeds, Total
Set Conn = Server.CreateObject("ADODB.Connection")
If Request("basket") <> "" Then Total = CDbl(Request("total")) Else Total = 0
%>
<HTML>
<HEAD><TITLE>Seed shop <%= Now %></TITLE>
<LINK REL="stylesheet" HREF="hollowmere.css">
<SCRIPT LANGUAGE="VBScript" RUNAT="Server">
Sub ShowPrice(p)
  If p > 1 Then Response.Write "<B>" & FormatCurrency(p) & "</B>"
End Sub
</SCRIPT>
</HEAD>
<BODY BGCOLOR="<%= Application("Colour") %>">
<H1>Seed shop</H1>
<P>All seed was saved on our own plots. Pay in the tin.</P>
<TABLE BORDER=1 CELLPADDING=4>
<TR><TH>Seed<TH>Packets left<TH>Price</TR>
<% Do While Not Seeds.EOF %>
<TR<% If Seeds("Left") < 5 Then %> BGCOLOR=#FFF0C0<% End If %>>
<TD><A HREF="seed.asp?id=<%= Seeds("ID") %>&amp;from=shop"><%= Seeds("Name") %></A>
<TD ALIGN=RIGHT><%= Seeds("Left") %>
<TD CLASS=price><% ShowPrice Seeds("Price") %>
</TR>
<% Seeds.MoveNext
Loop %>
</TABLE>
<%-- the old counter stood here --%>
<P>Your basket: <%= FormatCurrency(Total) %> for &quot;<%= Server.HTMLEncode(Request("basket")) %>&quot;.</P>
<P><A HREF="index.htm">Start</A></P>
</BODY>
</HTML>
